// SPDX-License-Identifier: Apache-2.0
// The first picture of a film.
#pragma once

#include <QByteArray>
#include <QImage>

// `film`: an AVI file, or its beginning. Null when no picture is to be had from it, whatever it is:
// only as much is decoded as is needed for the first. Thread-safe.
QImage firstFrameOf(const QByteArray& film);

// SPDX-License-Identifier: Apache-2.0
// Writes a picture without holding anybody up.
#pragma once

#include <QFuture>
#include <QImage>
#include <QString>

// A new PNG file, which is whole or not there, written on a thread of the pool: encoding a large
// picture takes a tenth of a second. The name is taken at once, so that the next one is another.
// The answer is what went wrong and what to do, or empty. GUI thread.
QFuture<QString> savePicture(const QImage& picture, const QString& path);

// SPDX-License-Identifier: Apache-2.0
// A small picture of what a recording shows.
#pragma once

#include <QByteArray>
#include <QImage>

#include "viewer/stage/files/recording_file.h"

// The largest.
constexpr QSize kThumbnailSize(320, 240);

// How many bytes from its beginning a recording's thumbnail needs at most; 0 when it can have none.
qint64 bytesForThumbnail(const RecordingFile& file);

// Of these bytes, in the shape of the picture. Null when they are nothing of this kind.
// Thread-safe.
QImage thumbnailOf(RecordingKind kind, const QByteArray& bytes);

// SPDX-License-Identifier: Apache-2.0
// The picture that stands for a recording.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

#include "viewer/stage/files/recording_file.h"

class QPainter;

// In the middle of `place`: the thumbnail, or where it is null a sign of the recording's kind in
// the colour `sign`.
void paintRecording(QPainter& painter, const QRect& place, RecordingKind kind,
                    const QImage& thumbnail, const QColor& sign);

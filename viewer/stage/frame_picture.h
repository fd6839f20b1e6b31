// SPDX-License-Identifier: Apache-2.0
// A robot's picture in the colours that it is shown in.
#pragma once

#include <QImage>

#include "viewer/core/frame.h"

// All pixels of the frame, as 32-bit pixels without alpha. Thread-safe. (The viewer's small view
// enlarges 160 x 120 pixels; here they are as the robot sent them.)
QImage pictureOf(const Frame& frame);

// One pixel as the robot sent it. The chrominances of 4:2:2 are those of its pair; of luminance
// alone there are none: 128.
struct YuvPixel {
  int y = 0;
  int u = 128;
  int v = 128;

  bool operator==(const YuvPixel&) const = default;
};

// `at` lies in the frame. Thread-safe.
YuvPixel yuvAt(const Frame& frame, QPoint at);

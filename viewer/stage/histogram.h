// SPDX-License-Identifier: Apache-2.0
// How bright a picture's pixels are.
#pragma once

#include <QImage>
#include <QRect>
#include <array>
#include <cstdint>

#include "viewer/core/frame.h"

class QPainter;

// How many pixels have each value: their luminance as the robot sent it, and their colours as they
// are shown. A plain value.
struct Histogram {
  using Counts = std::array<std::uint32_t, 256>;

  Counts luminance{};
  Counts red{};
  Counts green{};
  Counts blue{};
};

// `picture` shows the frame. Of large ones only every nth row and column is looked at, so that
// 640 x 480 pixels are counted at most. Thread-safe.
Histogram histogramOf(const Frame& frame, const QImage& picture);

// As curves in a dark box that fills `box`. GUI thread.
void paintHistogram(QPainter& painter, const Histogram& histogram, const QRectF& box);

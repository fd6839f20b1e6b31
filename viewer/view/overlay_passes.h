// SPDX-License-Identifier: Apache-2.0
// Which of a figure's passes have to be painted.
#pragma once

#include <QRectF>
#include <array>
#include <cstdint>

#include "viewer/core/display_object.h"

// A figure is drawn thickness + 1 times, each pass a pixel further out. What a robot sends may ask
// for billions of passes, so that only those which can reach the view are painted.

// first..last, empty when last < first.
struct PassRange {
  std::int64_t first;
  std::int64_t last;
};

// The passes, out of 0..thickness, that may touch `view`: two ranges that may overlap or be empty
// and together hold a few thousand passes at most. A pass that is in none of them paints nothing
// inside the view. `centreX` and `centreY` are finite and in the coordinates of `view`. A pure
// function.
std::array<PassRange, 2> touchingPasses(const displayObject& item, double centreX, double centreY,
                                        const QRectF& view);

// How many passes lie below the picture's top edge, which are the ones that are drawn at all.
std::int64_t drawnPasses(int thickness, double centreY);

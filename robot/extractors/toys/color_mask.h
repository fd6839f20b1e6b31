// SPDX-License-Identifier: Apache-2.0
// Where a picture has a colour.
#pragma once

#include <opencv2/core.hpp>

#include "robot/camera/frame.h"

namespace robot {

// A frame's picture, 8-bit Y, U, V. Wraps the frame's own pixels, which are only to be read, for as
// long as the frame lives.
cv::Mat yuvOf(const Frame& frame, int resolution);

// 255 where a pixel is no further than `tolerance` from `color`, else 0. `yuv`: 8-bit Y, U, V, of
// video range. Light is uneven: a pixel in less or more light than `color` is expected to be less
// or more colourful, and a difference in brightness itself counts a quarter of one in colour.
cv::Mat colorMask(const cv::Mat& yuv, cv::Vec3i color, int tolerance);

// Takes single pixels and threads away, and closes gaps of that size.
void removeSpecks(cv::Mat& mask);

}  // namespace robot

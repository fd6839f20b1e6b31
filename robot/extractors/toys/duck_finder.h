// SPDX-License-Identifier: Apache-2.0
// Finds yellow toy ducks with an orange beak.
#pragma once

#include <opencv2/core.hpp>
#include <vector>

namespace robot {

// In pixels of the picture.
struct Duck {
  cv::Point2d head;
  double headRadius = 0;
  cv::Point2d body;
  cv::Rect2d bodyBox;
};

// `yuv`: 8-bit Y, U, V. Thread-safe.
std::vector<Duck> findDucks(const cv::Mat& yuv);

}  // namespace robot

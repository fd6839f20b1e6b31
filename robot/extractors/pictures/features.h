// SPDX-License-Identifier: Apache-2.0
// What a picture is recognised by: the surroundings of its corners and blobs, whatever their size
// and however they are turned.
#pragma once

#include <opencv2/core.hpp>
#include <vector>

namespace robot {

struct Features {
  std::vector<cv::Point2f> points;
  cv::Mat descriptors;  // a row a point
};

// The `most` strongest ones of an 8-bit picture of one channel.
Features featuresOf(const cv::Mat& grey, int most);

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/features.h"

#include <opencv2/features2d.hpp>

namespace robot {

Features featuresOf(const cv::Mat& grey, int most) {
  std::vector<cv::KeyPoint> keypoints;
  Features features;
  cv::SIFT::create(most)->detectAndCompute(grey, cv::noArray(), keypoints, features.descriptors);
  cv::KeyPoint::convert(keypoints, features.points);
  return features;
}

}  // namespace robot

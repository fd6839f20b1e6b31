// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/landmarks/landmark_detector.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "robot/camera/field_of_view.h"

namespace robot {
namespace {

double extent(const Tag& tag, double cv::Point2d::*axis) {
  const auto less = [axis](const cv::Point2d& a, const cv::Point2d& b) {
    return a.*axis < b.*axis;
  };
  const auto [first, last] = std::minmax_element(tag.corners.begin(), tag.corners.end(), less);
  return *last.*axis - *first.*axis;
}

// Corners run from the lower left one around, against the clock, when the square stands upright.
float headingOf(const Tag& tag) {
  const cv::Point2d along = tag.corners[1] - tag.corners[0];
  return static_cast<float>(std::atan2(-along.y, along.x));
}

Ky::KyValue entryOf(const Tag& tag, cv::Size size) {
  const Ky::KyValue shape =
      Ky::KyValue::array({0, alphaAt(tag.centre.x / size.width), betaAt(tag.centre.y / size.height),
                          alphaOver(extent(tag, &cv::Point2d::x) / size.width),
                          betaOver(extent(tag, &cv::Point2d::y) / size.height), headingOf(tag)});
  return Ky::KyValue::array({shape, Ky::KyValue::array({tag.number})});
}

}  // namespace

std::vector<Finding> LandmarkDetector::detect(const Frame& frame) {
  cv::Mat grey;
  cv::cvtColor(frame.picture(), grey, cv::COLOR_BGR2GRAY);
  Ky::KyValue::Array entries;
  for (const Tag& tag : fFinder.find(grey)) entries.push_back(entryOf(tag, grey.size()));
  return {{"LandmarkDetected", findings(frame, std::move(entries))}};
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// Real photographs, which scripts/fetch-samples fetches.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <string>

#include "robot/camera/frame.h"
#include "robot/camera/pixels.h"

inline const std::filesystem::path kSamples = PERISCOPE_SAMPLES;

// In a test's body or SetUp().
#define SKIP_WITHOUT_SAMPLES()            \
  if (!std::filesystem::exists(kSamples)) \
  GTEST_SKIP() << "there are no photographs at " << kSamples << "; scripts/fetch-samples gets them"

// As a camera that looks at it takes it.
inline robot::Frame frameOf(const std::string& sample) {
  const cv::Mat photo = cv::imread((kSamples / sample).string(), cv::IMREAD_COLOR);
  if (photo.empty()) throw std::runtime_error("there is no photograph " + sample);
  return {robot::fitToCanvas(photo), 3000004, 0};
}

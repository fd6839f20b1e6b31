// SPDX-License-Identifier: Apache-2.0
// A picture that the robot was taught.
#pragma once

#include <filesystem>
#include <string>

#include "robot/extractors/pictures/features.h"

namespace robot {

// Immutable.
struct TaughtPicture {
  static constexpr int kLargestSide = 480;  // pixels; larger ones are shrunk to it
  static constexpr int kMostFeatures = 600;
  static constexpr int kFewestFeatures = 20;
  static constexpr std::uintmax_t kLargestFile = 64u << 20;  // bytes

  std::string label;
  cv::Size size;
  Features features;
};

// The label is the file's name without its extension. Throws KyError that names the file: it is too
// large or no picture, or the picture has too little detail to be told from others.
TaughtPicture readTaughtPicture(const std::filesystem::path& file);

}  // namespace robot

// What a camera's parameters do to its pictures.
#pragma once

#include <opencv2/core.hpp>

namespace robot {

// A plain value. As it is made it changes nothing.
struct PictureControls {
  static constexpr int kNeutralBrightness = 128;
  static constexpr int kNeutralContrast = 64;

  int brightness = kNeutralBrightness;  // 0..255: added to each channel, less 128
  int contrast = kNeutralContrast;      // 0..127: distance from middle grey, in 1/64
  bool horizontalFlip = false;          // left and right change places
  bool verticalFlip = false;            // top and bottom change places

  bool operator==(const PictureControls&) const = default;

  // The same pixels where nothing is to be done.
  cv::Mat apply(const cv::Mat& bgr) const;
};

}  // namespace robot

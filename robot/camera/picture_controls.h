// SPDX-License-Identifier: Apache-2.0
// What a camera's parameters do to its pictures.
#pragma once

#include <opencv2/core.hpp>

namespace robot {

// A plain value. As it is made it changes nothing. What is first here is done first.
struct PictureControls {
  static constexpr int kNeutralBrightness = 128;
  static constexpr int kNeutralContrast = 64;
  static constexpr int kNeutralSaturation = 128;

  double light = 1;  // each channel is multiplied by it, from 0
  double red = 1;    // red is, moreover
  double blue = 1;
  int contrast = kNeutralContrast;      // 0..127: distance from middle grey, in 1/64
  int brightness = kNeutralBrightness;  // 0..255: added to each channel, less 128
  int saturation = kNeutralSaturation;  // 0..255: distance from grey, in 1/128
  int hue = 0;                          // -180..180: degrees by which colours turn, red to yellow
  bool horizontalFlip = false;          // left and right change places
  bool verticalFlip = false;            // top and bottom change places

  bool operator==(const PictureControls&) const = default;

  // The same pixels where nothing is to be done. What does nothing costs nothing.
  cv::Mat apply(const cv::Mat& bgr) const;

 private:
  bool changesLevels() const;
  bool changesColours() const;
  cv::Mat levels() const;
  cv::Matx33f colours() const;
};

}  // namespace robot

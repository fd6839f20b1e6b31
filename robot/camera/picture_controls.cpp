// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/picture_controls.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace robot {

bool PictureControls::changesLevels() const {
  return light != 1 || red != 1 || blue != 1 || contrast != kNeutralContrast ||
         brightness != kNeutralBrightness;
}

bool PictureControls::changesColours() const {
  return saturation != kNeutralSaturation || hue != 0;
}

// What becomes of each of the 256 values of blue, green and red.
cv::Mat PictureControls::levels() const {
  const double factors[3] = {light * blue, light, light * red};
  const double stretch = contrast / static_cast<double>(kNeutralContrast);
  const double offset = brightness - kNeutralBrightness;
  cv::Mat table(1, 256, CV_8UC3);
  for (int level = 0; level < 256; ++level)
    for (int channel = 0; channel < 3; ++channel) {
      // As far as the sensor goes, whatever contrast makes of it.
      const double seen = std::min(level * factors[channel], 255.0);
      table.at<cv::Vec3b>(0, level)[channel] =
          cv::saturate_cast<uchar>((seen - 128) * stretch + 128 + offset);
    }
  return table;
}

// Turns and stretches the plane of colour differences; the luminance stays.
cv::Matx33f PictureControls::colours() const {
  const cv::Matx33f toYuv(0.114F, 0.587F, 0.299F,     // from blue, green, red
                          0.436F, -0.289F, -0.147F,   //
                          -0.100F, -0.515F, 0.615F);  //
  const double angle = hue * std::numbers::pi / 180;
  const double length = saturation / static_cast<double>(kNeutralSaturation);
  const auto along = static_cast<float>(length * std::cos(angle));
  const auto across = static_cast<float>(length * std::sin(angle));
  const cv::Matx33f turn(1, 0, 0, 0, along, -across, 0, across, along);
  return toYuv.inv() * turn * toYuv;
}

cv::Mat PictureControls::apply(const cv::Mat& bgr) const {
  cv::Mat result = bgr;
  cv::Mat own;  // the first change makes it, the others happen in place
  if (changesLevels()) {
    cv::LUT(result, levels(), own);
    result = own;
  }
  if (changesColours()) {
    cv::transform(result, own, colours());
    result = own;
  }
  if (horizontalFlip || verticalFlip) {
    cv::flip(result, own, horizontalFlip ? (verticalFlip ? -1 : 1) : 0);
    result = own;
  }
  return result;
}

}  // namespace robot

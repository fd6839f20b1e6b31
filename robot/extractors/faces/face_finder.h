// SPDX-License-Identifier: Apache-2.0
// Finds faces that look at the camera.
#pragma once

#include <filesystem>
#include <opencv2/objdetect.hpp>
#include <vector>

namespace robot {

// Where Debian's package opencv-data has them.
inline const std::filesystem::path kCascades = "/usr/share/opencv4/haarcascades";

struct Face {
  cv::Rect2d area;  // from the brows to the chin, pixels
  int support = 0;  // neighbouring places at which it was seen too; the more the surer
};

// Thread-bound.
class FaceFinder {
 public:
  static constexpr int kSmallest = 24;  // pixels, width of a face

  // Throws KyError that says what to install when a cascade can't be read.
  explicit FaceFinder(const std::filesystem::path& cascades = kCascades);

  // `grey`: 8-bit, one channel. From left to right.
  std::vector<Face> find(const cv::Mat& grey);

 private:
  bool isConfirmed(const cv::Mat& grey, const cv::Rect& area);
  bool hasBothEyes(const cv::Mat& grey, const cv::Rect& area);

  cv::CascadeClassifier fFirst;
  cv::CascadeClassifier fSecond;
  cv::CascadeClassifier fEye;
};

}  // namespace robot

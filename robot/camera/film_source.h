// SPDX-License-Identifier: Apache-2.0
// A film, played at its own rate over and over.
#pragma once

#include <opencv2/videoio.hpp>

#include "robot/camera/source.h"

namespace robot {

class FilmSource : public CameraSource {
 public:
  explicit FilmSource(std::string path);

  std::string name() const override { return fPath; }
  void open() override;
  SourcePicture next() override;
  std::chrono::microseconds period(int fps) const override;

 private:
  std::string fPath;
  cv::VideoCapture fCapture;
  double fRate = 25;
};

}  // namespace robot

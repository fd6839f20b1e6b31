// SPDX-License-Identifier: Apache-2.0
// A camera of the computer, through Video4Linux.
#pragma once

#include <opencv2/videoio.hpp>

#include "robot/camera/device_controls.h"
#include "robot/camera/source.h"

namespace robot {

// The device is open only while somebody watches: other programs may use it in between, and no
// old pictures wait in its queue.
class DeviceSource : public CameraSource {
 public:
  explicit DeviceSource(std::string path);

  std::string name() const override { return fPath; }
  void open() override;
  SourcePicture next() override;
  std::chrono::microseconds period(int fps) const override;
  void rest() override;
  SourceControls* controls() override { return &fControls; }

 private:
  std::string fPath;
  cv::VideoCapture fCapture;
  DeviceControls fControls;
};

}  // namespace robot

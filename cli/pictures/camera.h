// SPDX-License-Identifier: Apache-2.0
// The robot's camera, for one command.
#pragma once

#include <string>

#include "cli/robot_connection.h"
#include "ky/video_device_proxy.h"

namespace cli {

// What every command that takes pictures can be told.
struct CameraOptions {
  int resolution = 2;  // 640 x 480
  int fps = 30;
  std::string pictures;  // how they come
};

// Adds the options; `options.pictures` is the default.
void addCameraOptions(CLI::App& command, CameraOptions& options);

// A subscription that ends with the command.
class CameraSubscription {
 public:
  // Throws KyError when the robot has no cameras, or refuses.
  CameraSubscription(const RobotConnection& robot, const CameraOptions& options);
  ~CameraSubscription();
  CameraSubscription(const CameraSubscription&) = delete;
  CameraSubscription& operator=(const CameraSubscription&) = delete;

  const std::string& name() const { return fName; }
  // The newest picture's image record.
  Ky::KyValue newest() { return fProxy.getImageRemote(fName); }

 private:
  Ky::KyVideoDeviceProxy fProxy;
  std::string fName;
};

}  // namespace cli

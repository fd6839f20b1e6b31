// SPDX-License-Identifier: Apache-2.0
// What the camera's panel asks the robot, together where the robot offers that.
#pragma once

#include <string>

#include "ky/ahead.h"

class Module;

// What building the panel asks, before anybody knows of which model the camera is.
Ky::KyReads readsOfNewPanel(int camera);

// While it lives, the parameters that the panel follows, of the camera that is active now, have
// been asked for together; parameters that are written are not waited for, and what fails is logged
// at the end as the module does. GUI thread.
class CameraFollowing {
 public:
  CameraFollowing(const Module& module, int cameraModel);
  ~CameraFollowing();

 private:
  const std::string fRobot;  // for the log
  Ky::KyAhead fAhead;
};

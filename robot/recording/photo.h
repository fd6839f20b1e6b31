// SPDX-License-Identifier: Apache-2.0
// Takes photos of what the robot sees.
#pragma once

#include <string>

#include "robot/camera/cameras.h"
#include "robot/recording/home_folder.h"

namespace robot {

// Stores what the active camera sees now, as a JPEG in the size in which the camera takes it, and
// returns where. Throws KyError when the camera has no picture, HomeFolder takes no such file, or
// the disk is full; no part of a file is left then.
std::string takePhoto(Cameras& cameras, const HomeFolder& home, const std::string& folder,
                      const std::string& name);

}  // namespace robot

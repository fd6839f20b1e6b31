// SPDX-License-Identifier: Apache-2.0
// What the robot's detectors find in the country.
#pragma once

#include <memory>

#include "robot/camera/scene_item.h"

namespace robot {

// A signboard with the landmark of this number; stands still. The truth is its black square.
constexpr int kSignboardNumber = 42;
std::unique_ptr<SceneItem> makeSignboard();
// Bounces on the grass.
std::unique_ptr<SceneItem> makeBall();
// Waddles to and fro.
std::unique_ptr<SceneItem> makeDuck();

}  // namespace robot

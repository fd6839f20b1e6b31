// SPDX-License-Identifier: Apache-2.0
// What moves in the generated scenes.
#pragma once

#include <memory>

#include "robot/camera/scene_item.h"

namespace robot {

// Floats up and down over the country.
std::unique_ptr<SceneItem> makeBalloon();
// Drives along the road, out of the picture and in again on the other side.
std::unique_ptr<SceneItem> makeCar();
// Cruises over the town.
std::unique_ptr<SceneItem> makeAirship();
// Runs along the street, and back.
std::unique_ptr<SceneItem> makeTram();

}  // namespace robot

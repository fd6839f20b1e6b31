// SPDX-License-Identifier: Apache-2.0
// Pictures on a post in the generated scene.
#pragma once

#include <memory>

#include "robot/camera/scene_item.h"

namespace robot {

// Its truth is called "picture".
std::unique_ptr<SceneItem> makeHarbourSign();
// Its truth is called "logo".
std::unique_ptr<SceneItem> makeEmblemSign();

}  // namespace robot

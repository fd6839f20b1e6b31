// SPDX-License-Identifier: Apache-2.0
// Somebody to be seen in the generated scene.
#pragma once

#include <memory>

#include "robot/camera/scene_item.h"

namespace robot {

// Stands in the country, sways a little and looks at the camera. The truth is the face, from the
// brows to the chin.
std::unique_ptr<SceneItem> makePerson();

}  // namespace robot

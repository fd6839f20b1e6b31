// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/image_format.h"

#include <string>

#include "ky/error.h"

namespace robot {

void requireResolution(int resolution) {
  if (!isResolution(resolution))
    throw Ky::KyError("there is no resolution " + std::to_string(resolution) +
                      "; 0 is 160x120, 1 320x240, 2 640x480, 3 1280x960");
}

}  // namespace robot

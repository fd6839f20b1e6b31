// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/source.h"

#include <algorithm>

namespace robot {

std::chrono::microseconds periodForReaders(int fps) {
  return std::chrono::microseconds(1000000 / std::clamp(2 * fps, 1, 60));
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// What is known of the link over which pictures go.
#pragma once

#include <chrono>

namespace robot {

struct LinkState {
  bool isIdle = true;                          // nothing waits and nothing is under way
  double bytesPerSecond = 0;                   // 0: not known yet
  std::chrono::duration<double> roundTrip{0};  // without waiting; 0: not known yet
};

}  // namespace robot

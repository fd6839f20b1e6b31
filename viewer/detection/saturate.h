// SPDX-License-Identifier: Apache-2.0
// Float to int without surprises.
#pragma once

#include <cmath>
#include <limits>

// Truncates toward zero. What no int can hold becomes the nearest int, and NaN becomes 0: numbers
// come from the robot, and a plain cast of such a one is undefined behaviour. Thread-safe.
inline int truncateToInt(double number) {
  if (std::isnan(number)) return 0;
  if (number <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  if (number >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  return static_cast<int>(number);
}

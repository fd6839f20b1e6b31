// SPDX-License-Identifier: Apache-2.0
// One picture as the robot sent it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "ky/binary.h"

// A plain value; immutable once it is in a FrameFeed.
struct Frame {
  Ky::KyBinary pixels;  // as many as size and colour space say
  int width = 0;
  int height = 0;
  int colorSpace = 9;          // 9 YUV 4:2:2, 0 luminance alone, 10 YUV 4:4:4
  std::int64_t timestamp = 0;  // of its capture, by the robot's clock, in microseconds
  std::uint64_t number = 0;    // counts what came, from 1
  std::chrono::steady_clock::time_point arrived;
};

using FramePtr = std::shared_ptr<const Frame>;

// A time as robots tell it. Wraps around for times that no clock shows.
inline std::int64_t microsecondsOf(std::int64_t seconds, std::int64_t rest) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(seconds) * 1000000U +
                                   static_cast<std::uint64_t>(rest));
}

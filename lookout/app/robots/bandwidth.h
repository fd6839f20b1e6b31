// SPDX-License-Identifier: Apache-2.0
// How much arrives per second.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace Lookout {

// Fed with a count of bytes that only grows, or starts anew with a new connection. Thread-bound.
class Bandwidth {
 public:
  using Time = std::chrono::steady_clock::time_point;

  // Bytes per second since the update before; 0 at first and after a new start.
  double update(std::uint64_t bytes, Time now);

 private:
  struct Sample {
    std::uint64_t bytes;
    Time time;
  };
  std::optional<Sample> fLast;
};

}  // namespace Lookout

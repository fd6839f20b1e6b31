// SPDX-License-Identifier: Apache-2.0
// What we ask of the operating system.
#pragma once

#include <cstdint>
#include <functional>

namespace zu::os {

// A moment as POSIX gettimeofday(2) gives it: whole seconds since the Unix epoch and the
// microseconds (0..999999) on top.
struct TimeValue {
  std::int64_t tv_sec = 0;
  std::int64_t tv_usec = 0;
};

// Fills `now` with the wall-clock time. Thread-safe.
void gettimeofday(TimeValue* now);

// Microseconds since the Unix epoch. Thread-safe.
std::int64_t nowMicroseconds();

// Puts another clock behind gettimeofday() for as long as it lives: replays and tests decide what
// time it is. Thread-safe; at most one at a time.
class ClockOverride {
 public:
  explicit ClockOverride(std::function<TimeValue()> clock);
  ~ClockOverride();
  ClockOverride(const ClockOverride&) = delete;
  ClockOverride& operator=(const ClockOverride&) = delete;
};

}  // namespace zu::os

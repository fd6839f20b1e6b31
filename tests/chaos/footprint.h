// SPDX-License-Identifier: Apache-2.0
// What a process takes of the computer.
#pragma once

#include <sys/types.h>

#include <optional>

struct Footprint {
  long kilobytes = 0;  // resident memory
  long descriptors = 0;
  long threads = 0;
};

// Nothing of a process that is not there. Thread-safe.
std::optional<Footprint> footprintOf(pid_t process);

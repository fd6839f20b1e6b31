// SPDX-License-Identifier: Apache-2.0
// Prints values of the robot's memory whenever they change.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "ky/memory_proxy.h"

namespace cli {

struct WatchOptions {
  std::vector<std::string> keys;
  std::optional<double> every;  // seconds between two looks; nothing: the robot tells, if it can
  int count = 0;                // values to print; 0: without end
  bool json = false;
};

// A value a line: as JSON, after its key where there are several. null for one that was removed.
// Returns when so many are printed, or `out` takes no more. Throws KyError.
void watchMemory(Ky::KyMemoryProxy& memory, const WatchOptions& options, std::ostream& out);

}  // namespace cli

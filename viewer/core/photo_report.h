// SPDX-License-Identifier: Apache-2.0
// What became of a photo that the robot was asked for.
#pragma once

#include <optional>
#include <string>

// A plain value.
struct PhotoReport {
  std::string path;                  // on the robot; empty when it did not say where
  std::optional<std::string> error;  // why there is no photo; nothing when there is one
};

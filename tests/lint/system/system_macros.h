// SPDX-License-Identifier: Apache-2.0
// Stands for a header of somebody else: what is wrong in here is not reported, what its macros make
// of our files is.
#pragma once

#include <vector>

#define DEFINE_FUNCTION(name) int name(std::vector<int> values)

inline int sizeForOthers(std::vector<int> values) {
  return static_cast<int>(values.size());
}

template <typename T>
int sizeOfOthers(T value) {
  return static_cast<int>(value.size());
}

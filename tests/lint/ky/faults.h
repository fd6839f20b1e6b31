// SPDX-License-Identifier: Apache-2.0
// Faults in a header of ours; see faults.cpp.
#pragma once

#include <string>
#include <vector>

#define TWICE(x) x * 2  // FAULT bugprone-macro-parentheses

struct Base {
  virtual ~Base() {}  // FAULT modernize-use-equals-default
  virtual void run();
};

inline int sizeInHeader(std::vector<int> values) {  // FAULT performance-unnecessary-value-param
  return static_cast<int>(values.size());
}

template <typename T>
class Holder {
 public:
  // Found where it is instantiated.
  int sum() {
    int result = 0;
    for (T item : items()) {  // FAULT performance-for-range-copy
      result += static_cast<int>(item.size());
    }
    return result;
  }

 private:
  const T (&items())[2];
};

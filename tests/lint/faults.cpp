// SPDX-License-Identifier: Apache-2.0
// A fault for every kind of place that lint has to look into. `scripts/lint --self-test` sees that
// it finds what is marked, and nothing else. Never compiled.
#include "ky/faults.h"

#include <system_macros.h>

#include <set>
#include <utility>

namespace other {
struct Used {};
struct Unused {};
}  // namespace other

using other::Unused;  // FAULT misc-unused-using-decls
using other::Used;
namespace shorter = other;  // FAULT misc-unused-alias-decls

namespace {

struct Outer {
  struct Derived : Base {
    void run() {}  // FAULT modernize-use-override
  };
};

int useAfterMove(std::string text) {
  const std::string taken = std::move(text);
  return static_cast<int>(taken.size() + text.size());  // FAULT bugprone-use-after-move
}

void catchInLambda() {
  const auto lambda = [] {
    try {
      sizeForOthers({});
    } catch (std::string text) {  // FAULT misc-throw-by-value-catch-by-reference
      sizeOfOthers(text);
    }
  };
  lambda();
}

template <typename T>
bool isSmall(T value) {
  return sizeof(sizeof(value)) == 4;  // FAULT bugprone-sizeof-expression
}

const int kUnused = 0;  // FAULT clang-diagnostic-unused-const-variable

}  // namespace

DEFINE_FUNCTION(ofSystemMacro) {
  const std::vector<int> taken = std::move(values);
  return static_cast<int>(taken.size() + values.size());  // FAULT bugprone-use-after-move
}

// In a namespace that is not ours, and in what a generic lambda becomes.
template <>
struct std::hash<Used> {
  size_t operator()(const Used&) const {
    const auto generic = [](const auto& values) {
      size_t result = 0;
      for (const auto value : values) {  // FAULT performance-for-range-copy
        result += value.size();
      }
      return result;
    };
    return generic(std::set<std::string>());
  }
};

int useAll() {
  Outer::Derived().run();
  catchInLambda();
  return useAfterMove("") + Holder<std::string>().sum() + static_cast<int>(isSmall(1)) + TWICE(1);
}

// SPDX-License-Identifier: Apache-2.0
// How a call ended.
#pragma once

#include <string>

#include "ky/error.h"
#include "ky/value.h"

namespace Ky {

// Crosses threads, so it holds texts of its own instead of an exception.
struct Outcome {
  KyValue value;
  bool failed = false;
  std::string module;
  std::string method;
  std::string text;

  static Outcome success(KyValue value) { return {std::move(value), false, {}, {}, {}}; }
  static Outcome failure(std::string module, std::string method, std::string text) {
    return {{}, true, std::move(module), std::move(method), std::move(text)};
  }

  KyError error() const { return {module, method, text}; }
  // The value, or throws the error.
  KyValue take() {
    if (failed) throw error();
    return std::move(value);
  }
};

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "ky/error.h"

namespace Ky {

KyError::KyError(const std::string& text) : std::runtime_error(text) {
}

KyError::KyError(const std::string& module, const std::string& method, const std::string& text)
    : std::runtime_error(text), fModule(module), fMethod(method) {
}

std::string KyError::toString() const {
  std::string place = fModule;
  if (!fMethod.empty()) place += place.empty() ? fMethod : "." + fMethod;
  return place.empty() ? what() : place + ": " + what();
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// What a call throws, as text.
#pragma once

#include <functional>
#include <string>

#include "ky/error.h"

// KyError::toString(), or "no error".
inline std::string errorOfCall(const std::function<void()>& call) {
  try {
    call();
  } catch (const Ky::KyError& error) {
    return error.toString();
  }
  return "no error";
}

// SPDX-License-Identifier: Apache-2.0
// JSON text to values of the runtime, and back.
#pragma once

#include <string>

#include "ky/value.h"

namespace cli {

// null, booleans, integers of 64 bits, other numbers, strings and arrays of these. Throws WrongUse
// that quotes `text` and says what is wrong with it.
Ky::KyValue parseJson(const std::string& text);

// On one line. What JSON has no word for: a float that is no number is null, a binary is the
// string "<N bytes>", bytes that are not UTF-8 are U+FFFD.
std::string toJson(const Ky::KyValue& value);

}  // namespace cli

// JSON text to values of the runtime.
#pragma once

#include <string>

#include "ky/value.h"

namespace cli {

// null, booleans, integers of 64 bits, other numbers, strings and arrays of these. Throws WrongUse
// that quotes `text` and says what is wrong with it.
Ky::KyValue parseJson(const std::string& text);

}  // namespace cli

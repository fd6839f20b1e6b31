// SPDX-License-Identifier: Apache-2.0
// Whether an encoder works here is better known at the start than at the first narrow link.
#pragma once

#include <string>

namespace robot {

// Encodes a grey picture and one in colour with libavcodec's encoder of this name. Throws KyError
// that says what is wrong and what to do when it can't. Thread-safe.
void tryEncoder(const std::string& name);

}  // namespace robot

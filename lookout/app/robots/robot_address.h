// SPDX-License-Identifier: Apache-2.0
// A robot's address as people type it.
#pragma once

#include <QString>

#include "ky/address.h"
#include "ky/error.h"

namespace Lookout {

// "HOST", "HOST:PORT" or "[IPV6]:PORT"; `port` holds where the text names none. Throws Ky::KyError
// that says what is wrong with it. Thread-safe.
Ky::KyAddress robotAddress(const QString& text, int port = Ky::kDefaultPort);

}  // namespace Lookout

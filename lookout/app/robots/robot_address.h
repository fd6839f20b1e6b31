// SPDX-License-Identifier: Apache-2.0
// A robot's address: how people type it, and what becomes of what is said with it.
#pragma once

#include <QString>

#include "ky/address.h"
#include "ky/error.h"

namespace Lookout {

// "HOST", "HOST:PORT" or "[IPV6]:PORT"; `port` holds where the text names none. Throws Ky::KyError
// that says what is wrong with it. Thread-safe.
Ky::KyAddress robotAddress(const QString& text, int port = Ky::kDefaultPort);

// Whether a connection that is made now to this robot crosses a network without encryption. Never
// so on loopback. Thread-safe.
bool isExposed(const Ky::KyAddress& robot);

}  // namespace Lookout

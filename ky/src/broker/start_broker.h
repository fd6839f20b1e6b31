// SPDX-License-Identifier: Apache-2.0
// Makes the broker that its options ask for.
#pragma once

#include <memory>

#include "broker/broker_core.h"

namespace Ky {

// A main broker that listens, or a peer that is connected to its parent unless told to connect
// later. Throws KyError when the options ask for both or neither, and when it can't be done.
std::unique_ptr<BrokerCore> startBroker(KyBrokerOptions options);

}  // namespace Ky

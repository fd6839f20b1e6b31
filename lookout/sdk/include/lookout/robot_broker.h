// SPDX-License-Identifier: Apache-2.0
// How a desktop reaches a robot: the same for the plug-ins and for the host.
#pragma once

#include <string>

#include "ky/broker.h"

namespace Lookout {

// The options of a broker that is a peer of the robot's. A robot on loopback needs no keys; for any
// other those of this desktop are used, when it has some. Thread-safe.
Ky::KyBrokerOptions robotBrokerOptions(const std::string& brokerName, const Ky::KyAddress& robot);

}  // namespace Lookout

// SPDX-License-Identifier: Apache-2.0
// How a desktop reaches a robot: the same for the plug-ins and for the host.
#pragma once

#include <string>

#include "ky/broker.h"

namespace Lookout {

// The options of a broker that is a peer of the robot's. A robot on loopback needs no keys; for any
// other those of this desktop are used, when it has some and nobody wants it otherwise.
// Thread-safe.
Ky::KyBrokerOptions robotBrokerOptions(const std::string& brokerName, const Ky::KyAddress& robot);

// Chooses, for all brokers that this process makes from now on for the robot at exactly this
// address, whether they go without keys: for a robot that was started with --insecure. The host
// calls it before it has a plug-in make a widget. At first no robot is unencrypted. Thread-safe.
void setUnencrypted(const Ky::KyAddress& robot, bool unencrypted);

}  // namespace Lookout

// SPDX-License-Identifier: Apache-2.0
#include "lookout/robot_broker.h"

Ky::KyBrokerOptions Lookout::robotBrokerOptions(const std::string& brokerName,
                                                const Ky::KyAddress& robot) {
  Ky::KyBrokerOptions options;
  options.name = brokerName;
  options.parent = robot;
  if (!robot.isLoopback() && Ky::KyKeyStore(Ky::KyKeyStore::defaultFolder()).exists())
    options.keys = Ky::KyKeyStore::defaultFolder();
  return options;
}

// SPDX-License-Identifier: Apache-2.0
#include "lookout/robot_broker.h"

#include <set>

#include "zu/mutex.h"

namespace Lookout {
namespace {

// Of the whole process: what the host chooses must reach the brokers of plug-ins, which are told
// no more than an address.
zu::Mutex unencryptedMutex;
std::set<std::string> unencryptedRobots ZU_GUARDED_BY(unencryptedMutex);

bool isUnencrypted(const Ky::KyAddress& robot) {
  const zu::MutexLock guard(unencryptedMutex);
  return unencryptedRobots.contains(robot.toString());
}

}  // namespace

Ky::KyBrokerOptions robotBrokerOptions(const std::string& brokerName, const Ky::KyAddress& robot) {
  Ky::KyBrokerOptions options;
  options.name = brokerName;
  options.parent = robot;
  if (robot.isLoopback() || isUnencrypted(robot)) return options;
  if (Ky::KyKeyStore(Ky::KyKeyStore::defaultFolder()).exists())
    options.keys = Ky::KyKeyStore::defaultFolder();
  return options;
}

void setUnencrypted(const Ky::KyAddress& robot, bool unencrypted) {
  const zu::MutexLock guard(unencryptedMutex);
  if (unencrypted)
    unencryptedRobots.insert(robot.toString());
  else
    unencryptedRobots.erase(robot.toString());
}

}  // namespace Lookout

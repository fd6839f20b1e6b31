// SPDX-License-Identifier: Apache-2.0
#include "robot/services/launcher.h"

namespace robot {

Launcher::Launcher(boost::shared_ptr<Ky::KyBroker> broker)
    : KyModule(std::move(broker), "KyLauncher") {
  setModuleDescription("Tells what runs on the robot.");
  functionName("isModulePresent", getName(), "Whether a module can be called now.");
  addParam("name", "of the module");
  setReturn("present", "true when it can");
  bindMethod(&Launcher::isModulePresent);
}

bool Launcher::isModulePresent(const std::string& name) {
  return getParentBroker()->isModulePresent(name);
}

}  // namespace robot

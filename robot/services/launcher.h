// SPDX-License-Identifier: Apache-2.0
// The module "KyLauncher": tells what runs on the robot.
#pragma once

#include <string>

#include "ky/module.h"

namespace robot {

class Launcher : public Ky::KyModule {
 public:
  explicit Launcher(boost::shared_ptr<Ky::KyBroker> broker);

  // Of all modules in reach, the connected programs' too.
  bool isModulePresent(const std::string& name);
};

}  // namespace robot

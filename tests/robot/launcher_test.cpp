// SPDX-License-Identifier: Apache-2.0
#include "robot/services/launcher.h"

#include <gtest/gtest.h>

#include "in_process_robot.h"
#include "ky/proxy.h"
#include "robot/services/memory.h"

namespace robot {
namespace {

TEST(Launcher, KnowsTheRobotsModules) {
  const InProcessRobot robot;
  Ky::KyModule::createModule<Launcher>(robot.broker());
  Ky::KyModule::createModule<Memory>(robot.broker());
  const auto launcher = robot.broker()->getProxy("KyLauncher");
  EXPECT_TRUE(launcher->call<bool>("isModulePresent", "KyMemory"));
  EXPECT_TRUE(launcher->call<bool>("isModulePresent", "KyLauncher")) << "itself, while it works";
  EXPECT_FALSE(launcher->call<bool>("isModulePresent", "KyFaceDetection"));
}

TEST(Launcher, KnowsTheModulesOfOtherPrograms) {
  InProcessRobot robot;
  Ky::KyModule::createModule<Launcher>(robot.broker());
  const auto desktop = robot.connect("one"), other = robot.connect("other");
  Ky::KyModule::createModule<Memory>(other);
  EXPECT_TRUE(desktop->getProxy("KyLauncher")->call<bool>("isModulePresent", "KyMemory"));
  other->unregisterModule("KyMemory");
  EXPECT_FALSE(desktop->getProxy("KyLauncher")->call<bool>("isModulePresent", "KyMemory"));
}

}  // namespace
}  // namespace robot

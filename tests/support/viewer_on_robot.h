// SPDX-License-Identifier: Apache-2.0
// A robot of scripted modules and the viewer's module on a desktop that is connected to it.
#pragma once

#include "support/log_capture.h"
#include "support/test_robot.h"
#include "viewer/core/module.h"

// Thread-bound. What was called and logged while it was built is forgotten.
struct ViewerOnRobot {
  enum class Camera { Present, Missing };

  explicit ViewerOnRobot(Camera camera = Camera::Present,
                         TestRobot::Offers offers = TestRobot::Offers::Nothing)
      : robot(offers) {
    if (camera == Camera::Present) device = robot.addVideoDevice();
    broker = robot.connect();
    module = Ky::KyModule::createModule<Module>(broker);
    module->askForVIM();
    robot.takeCalls();
    log.clear();
  }

  // Ends the module, as when the robot's dock is closed.
  void dropModule() {
    module.reset();
    broker->unregisterModule("Periscope");
    robot.takeCalls();
    log.clear();
  }

  Model& model() { return *module->model(); }

  LogCapture log;
  TestRobot robot;
  boost::shared_ptr<ScriptedModule> device;  // null when the camera is missing
  boost::shared_ptr<Ky::KyBroker> broker;
  boost::shared_ptr<Module> module;
};

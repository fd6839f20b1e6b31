// SPDX-License-Identifier: Apache-2.0
#include "support/test_robot.h"

#include <boost/make_shared.hpp>

TestRobot::TestRobot(Offers offers)
    : fPlace(boost::make_shared<Ky::KyInProcess>()), fCalls(std::make_shared<CallList>()) {
  Ky::KyBrokerOptions options;
  options.name = "robot";
  options.inProcess = fPlace;
  options.listenInProcess = "robot";
  options.pipelining = offers == Offers::Pipelining;
  fMain = Ky::KyBroker::create(std::move(options));
}

TestRobot::~TestRobot() {
  for (const auto& desktop : fDesktops) desktop->shutdown();
  fMain->shutdown();
}

boost::shared_ptr<ScriptedModule> TestRobot::add(const std::string& module,
                                                 const std::vector<std::string>& offers) {
  return Ky::KyModule::createModule<ScriptedModule>(fMain, module, fCalls, offers);
}

boost::shared_ptr<ScriptedModule> TestRobot::addVideoDevice() {
  auto device = add("KyVideoDevice");
  device->answer("subscribe", [](const Ky::KyValue::Array& arguments) {
    const std::string& name = arguments.at(0).asString();
    return Ky::KyValue(name.empty() ? "viewer_1" : name);
  });
  for (const char* method : {"setFrameRate", "setResolution", "setColorSpace", "setActiveCamera"})
    device->answer(method, true);
  device->answer("unsubscribe", Ky::KyValue());
  device->answer("getCameraModelID", 1);
  device->answer("getParam", 0);
  device->answer("setParam", Ky::KyValue());
  return device;
}

void TestRobot::remove(const std::string& module) {
  fMain->unregisterModule(module);
}

boost::shared_ptr<Ky::KyBroker> TestRobot::connect(const std::string& name,
                                                   const Ky::KyPatience& patience) {
  Ky::KyBrokerOptions options;
  options.name = name;
  options.inProcess = fPlace;
  options.parentInProcess = "robot";
  options.patience = patience;
  fDesktops.push_back(Ky::KyBroker::create(std::move(options)));
  return fDesktops.back();
}

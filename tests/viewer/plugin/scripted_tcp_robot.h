// SPDX-License-Identifier: Apache-2.0
// A robot of scripted modules that listens on loopback, as a real one does.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "support/scripted_module.h"

// Thread-bound. Its broker is shut down when it goes.
struct ScriptedTcpRobot {
  enum class Offers { Nothing, Pipelining };

  explicit ScriptedTcpRobot(Offers offers = Offers::Nothing) {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.pipelining = offers == Offers::Pipelining;
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    broker = Ky::KyBroker::create(std::move(options));
  }
  ~ScriptedTcpRobot() { broker->shutdown(); }
  ScriptedTcpRobot(const ScriptedTcpRobot&) = delete;
  ScriptedTcpRobot& operator=(const ScriptedTcpRobot&) = delete;

  boost::shared_ptr<ScriptedModule> add(const std::string& module) {
    return Ky::KyModule::createModule<ScriptedModule>(broker, module, calls);
  }
  boost::shared_ptr<ScriptedModule> addVideoDevice() {
    auto device = add("KyVideoDevice");
    device->answer("subscribe", "viewer_1");
    for (const char* method : {"unsubscribe", "setParam"}) device->answer(method, Ky::KyValue());
    device->answer("getCameraModelID", 1);
    device->answer("getParam", 0);
    return device;
  }
  int port() const { return broker->address().port; }

  std::shared_ptr<CallList> calls = std::make_shared<CallList>();
  boost::shared_ptr<Ky::KyBroker> broker;
};

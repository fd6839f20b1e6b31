// SPDX-License-Identifier: Apache-2.0
// A robot of scripted modules behind the real runtime, on the in-process transport.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ky/broker.h"
#include "support/scripted_module.h"

// Thread-bound. Its brokers are shut down when it goes.
class TestRobot {
 public:
  // What its runtime does beyond what every robot's does.
  enum class Offers { Nothing, Pipelining };

  explicit TestRobot(Offers offers = Offers::Nothing);
  ~TestRobot();

  // Adds a module that answers nothing yet. Desktops hear what it offers a moment later.
  boost::shared_ptr<ScriptedModule> add(const std::string& module,
                                        const std::vector<std::string>& offers = {});
  // A "KyVideoDevice" that accepts everything: subscribe answers `name` or "viewer_1".
  boost::shared_ptr<ScriptedModule> addVideoDevice();
  void remove(const std::string& module);

  // A broker of a desktop that is connected to this robot. The robot keeps it and shuts it down at
  // its end, unless the test did.
  boost::shared_ptr<Ky::KyBroker> connect(const std::string& name = "PeriscopeBroker",
                                          const Ky::KyPatience& patience = {});

  const boost::shared_ptr<Ky::KyBroker>& broker() const { return fMain; }
  std::vector<std::string> calls() const { return fCalls->calls(); }
  std::vector<std::string> takeCalls() { return fCalls->take(); }

 private:
  boost::shared_ptr<Ky::KyInProcess> fPlace;
  std::shared_ptr<CallList> fCalls;
  boost::shared_ptr<Ky::KyBroker> fMain;
  std::vector<boost::shared_ptr<Ky::KyBroker>> fDesktops;
};

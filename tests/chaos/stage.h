// SPDX-License-Identifier: Apache-2.0
// A robot in a process of its own, and the link over which it is reached.
#pragma once

#include <future>
#include <memory>
#include <optional>
#include <string>

#include "ky/broker.h"
#include "robot/kyrobot_process.h"
#include "support/link.h"

// Thread-bound, and not to outlive the thread that has made it: programs end with the thread that
// has started them.
class Stage {
 public:
  Stage();
  ~Stage();

  Link& link() { return *fLink; }
  // Where the link begins.
  Ky::KyAddress address() const;

  // Starts a new robot when the one before is to end, and waits until it listens.
  void startRobot();
  void signalRobot(int number) { fRobot->process().signal(number); }
  pid_t robot() const { return fRobot->process().pid(); }

  // Calls a module directly, not over the link. Throws KyError.
  Ky::KyValue call(const std::string& module, const std::string& method,
                   const Ky::KyValue::Array& arguments = {});
  // The same without waiting for the answer; waitForAnswer() does, and throws nothing. The stage
  // does at its end.
  void callLater(const std::string& module, const std::string& method,
                 const Ky::KyValue::Array& arguments = {});
  bool isAnswered() const;
  void waitForAnswer();

 private:
  std::unique_ptr<KyrobotProcess> fRobot;
  Ky::KyAddress fRobotAddress;
  std::unique_ptr<Link> fLink;
  std::future<Ky::KyValue> fAnswer;
};

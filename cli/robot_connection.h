// SPDX-License-Identifier: Apache-2.0
// How the commands reach a robot.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "ky/broker.h"

namespace CLI {
class App;
}

namespace cli {

// What every command that talks to a robot can be told.
struct RobotOptions {
  std::string robot = Ky::KyAddress{}.toString();
  std::string keys;       // folder; empty: the user's own, beyond this computer
  bool insecure = false;  // no keys, even if there are some
  bool json = false;      // the result is for a script
};

// Adds a subcommand that talks to a robot, with the options for it.
CLI::App& addRobotCommand(CLI::App& app, const std::string& name, const std::string& description,
                          RobotOptions& options);

// A connection that ends with the command.
class RobotConnection {
 public:
  // Throws WrongUse for an address that is none, KyError when the robot can't be reached.
  explicit RobotConnection(const RobotOptions& options);
  ~RobotConnection() { fBroker->shutdown(); }
  RobotConnection(const RobotConnection&) = delete;
  RobotConnection& operator=(const RobotConnection&) = delete;

  Ky::KyBroker* operator->() const { return fBroker.get(); }
  const boost::shared_ptr<Ky::KyBroker>& broker() const { return fBroker; }

 private:
  boost::shared_ptr<Ky::KyBroker> fBroker;
};

}  // namespace cli

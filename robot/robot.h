// SPDX-License-Identifier: Apache-2.0
// The whole robot: cameras, broker and modules, wired.
#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "ky/broker.h"
#include "robot/camera/cameras.h"
#include "robot/options.h"

namespace robot {

// The modules that a robot has unless told to leave them out.
std::vector<std::string> moduleNames();

// Thread-bound. Works from construction to destruction.
class Robot {
 public:
  // Throws KyError that says what to do: a camera's source can't be opened, the home folder can't
  // be made, the encoder can't be used, the port is taken, keys are missing.
  explicit Robot(const Options& options);
  ~Robot();
  Robot(const Robot&) = delete;
  Robot& operator=(const Robot&) = delete;

  // Where it listens, with the real port.
  Ky::KyAddress address() const { return fBroker->address(); }

 private:
  std::shared_ptr<Cameras> fCameras;
  boost::shared_ptr<Ky::KyBroker> fBroker;
};

}  // namespace robot

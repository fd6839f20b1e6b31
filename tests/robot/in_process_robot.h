// SPDX-License-Identifier: Apache-2.0
// The robot's modules behind a real broker, with real peers, without a network.
#pragma once

#include <boost/make_shared.hpp>
#include <vector>

#include "ky/broker.h"
#include "robot/camera/cameras.h"
#include "robot/camera/open_source.h"

class InProcessRobot {
 public:
  InProcessRobot() {
    Ky::KyBrokerOptions options;
    options.name = "kyrobot";
    options.inProcess = fPlace;
    options.listenInProcess = "robot";
    fBroker = Ky::KyBroker::create(std::move(options));
  }
  ~InProcessRobot() {
    for (const auto& peer : fPeers) peer->shutdown();
    fBroker->shutdown();
  }
  InProcessRobot(const InProcessRobot&) = delete;
  InProcessRobot& operator=(const InProcessRobot&) = delete;

  const boost::shared_ptr<Ky::KyBroker>& broker() const { return fBroker; }

  boost::shared_ptr<Ky::KyBroker> connect(const std::string& name = "PeriscopeBroker") {
    Ky::KyBrokerOptions options;
    options.name = name;
    options.inProcess = fPlace;
    options.parentInProcess = "robot";
    fPeers.push_back(Ky::KyBroker::create(std::move(options)));
    return fPeers.back();
  }

  // Both cameras show the generated scene.
  static std::shared_ptr<robot::Cameras> cameras(int model = 1) {
    return std::make_shared<robot::Cameras>(
        std::array<std::unique_ptr<robot::CameraSource>, robot::kCameras>{
            robot::openSource("generated", 0), robot::openSource("generated", 1)},
        model);
  }

 private:
  boost::shared_ptr<Ky::KyInProcess> fPlace = boost::make_shared<Ky::KyInProcess>();
  boost::shared_ptr<Ky::KyBroker> fBroker;
  std::vector<boost::shared_ptr<Ky::KyBroker>> fPeers;
};

// The text of the KyError that `action` throws; "no error" when it throws none.
template <class Action>
std::string errorText(Action action) {
  try {
    action();
  } catch (const Ky::KyError& error) {
    return error.what();
  }
  return "no error";
}

// SPDX-License-Identifier: Apache-2.0
// Who has been connected to a robot.
#pragma once

#include <QStringList>
#include <atomic>
#include <utility>

#include "ky/module.h"

// A module of the robot's that notes the peers that leave it. `names` may be read once `left` has
// been seen to count them.
class Guests : public Ky::KyModule {
 public:
  explicit Guests(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(std::move(broker), "Guests") {}

  void peerLeft(const Ky::KyPeer& peer) override {
    names << QString::fromStdString(peer.name);
    ++left;
  }

  QStringList names;
  std::atomic<int> left = 0;
};

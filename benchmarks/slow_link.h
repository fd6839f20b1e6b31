// SPDX-License-Identifier: Apache-2.0
// A link with a long way, before a robot on this machine.
#pragma once

#include <atomic>
#include <chrono>
#include <list>
#include <thread>

#include "ky/address.h"

namespace bench {

// Passes every connection to its address on to the robot, each byte `way` later; a connection
// counts as made after one round trip, as by TCP, which on one machine knows no distance. Any rate.
// Runs on a thread of its own until it is destroyed; thread-bound otherwise.
class SlowLink {
 public:
  // Throws std::runtime_error when it can't listen.
  SlowLink(const Ky::KyAddress& robot, std::chrono::milliseconds way);
  ~SlowLink();
  SlowLink(const SlowLink&) = delete;
  SlowLink& operator=(const SlowLink&) = delete;

  int port() const { return fPort; }

 private:
  struct Connection;

  void run();
  void accept();

  const int fRobotPort;
  const std::chrono::milliseconds fWay;
  int fListener = -1;
  int fPort = 0;
  std::list<Connection> fConnections;  // the thread's own
  std::atomic<bool> fStopping = false;
  std::thread fThread;
};

}  // namespace bench

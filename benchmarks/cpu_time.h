// SPDX-License-Identifier: Apache-2.0
// What the two sides of a connection cost.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <set>

namespace bench {

// The threads that `make` leaves running in this process. No other may begin meanwhile.
std::set<pid_t> threadsOf(const std::function<void()>& make);

// Measures from its construction on. Thread-bound.
class CpuTime {
 public:
  // `network`: threads of this process that stand for a network and count for neither side.
  explicit CpuTime(pid_t robot, std::set<pid_t> network = {});

  // User and system time, as percent of one core.
  double robot() const;
  double desktop() const;

 private:
  double desktopSeconds() const;
  double percent(double seconds) const;

  const pid_t fRobotProcess;
  const std::set<pid_t> fNetwork;
  const std::chrono::steady_clock::time_point fBegin;
  const double fRobot;    // seconds until then
  const double fDesktop;  // the same
};

}  // namespace bench

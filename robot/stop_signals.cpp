// SPDX-License-Identifier: Apache-2.0
#include "robot/stop_signals.h"

#include <csignal>
#include <initializer_list>

namespace robot {
namespace {

sigset_t stopSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, signal);
  return set;
}

}  // namespace

StopSignals::StopSignals() {
  const sigset_t set = stopSet();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
}

void StopSignals::wait() const {
  const sigset_t set = stopSet();
  int signal = 0;
  while (sigwait(&set, &signal) != 0) {
  }
}

}  // namespace robot

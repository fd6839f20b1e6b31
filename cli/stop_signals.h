// SPDX-License-Identifier: Apache-2.0
// Ctrl-C and kill, looked for instead of handled.
#pragma once

#include <csignal>

namespace cli {

// While it lives, they end nothing by themselves. Make one before any other thread: threads made
// later don't receive the signals either. Thread-bound.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  // Whether the process has been told to stop: SIGINT, SIGTERM or SIGHUP.
  bool wasTold();

 private:
  sigset_t fStops{};
  sigset_t fBefore{};
  bool fTold = false;
};

}  // namespace cli

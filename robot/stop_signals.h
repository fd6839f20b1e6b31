// SPDX-License-Identifier: Apache-2.0
// Ctrl-C and kill, waited for instead of handled.
#pragma once

namespace robot {

// Make one before any other thread: threads made later don't receive the signals either. A broken
// pipe on standard output and a file that may not grow further are no reasons to die, so SIGPIPE
// and SIGXFSZ are ignored.
class StopSignals {
 public:
  StopSignals();

  // Returns when the process is told to stop: SIGINT, SIGTERM or SIGHUP.
  void wait() const;
};

}  // namespace robot

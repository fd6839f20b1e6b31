// SPDX-License-Identifier: Apache-2.0
#include "cli/stop_signals.h"

#include <ctime>
#include <initializer_list>

namespace cli {

StopSignals::StopSignals() {
  sigemptyset(&fStops);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&fStops, signal);
  pthread_sigmask(SIG_BLOCK, &fStops, &fBefore);
}

StopSignals::~StopSignals() {
  const timespec atOnce{};
  while (sigtimedwait(&fStops, nullptr, &atOnce) > 0) {  // told twice
  }
  pthread_sigmask(SIG_SETMASK, &fBefore, nullptr);
}

bool StopSignals::wasTold() {
  const timespec atOnce{};
  fTold = fTold || sigtimedwait(&fStops, nullptr, &atOnce) > 0;
  return fTold;
}

}  // namespace cli

// SPDX-License-Identifier: Apache-2.0
#include "zu/os.h"

#include <sys/time.h>

#include <stdexcept>

#include "zu/mutex.h"

namespace zu::os {
namespace {

Mutex overrideMutex;
std::function<TimeValue()> overrideClock ZU_GUARDED_BY(overrideMutex);

}  // namespace

void gettimeofday(TimeValue* now) {
  {
    const MutexLock guard(overrideMutex);
    if (overrideClock) {
      *now = overrideClock();
      return;
    }
  }
  timeval time{};
  ::gettimeofday(&time, nullptr);
  now->tv_sec = time.tv_sec;
  now->tv_usec = time.tv_usec;
}

std::int64_t nowMicroseconds() {
  TimeValue now;
  gettimeofday(&now);
  return now.tv_sec * 1'000'000 + now.tv_usec;
}

ClockOverride::ClockOverride(std::function<TimeValue()> clock) {
  const MutexLock guard(overrideMutex);
  if (overrideClock) throw std::logic_error("zu::os: the clock is overridden already");
  overrideClock = std::move(clock);
}

ClockOverride::~ClockOverride() {
  const MutexLock guard(overrideMutex);
  overrideClock = nullptr;
}

}  // namespace zu::os

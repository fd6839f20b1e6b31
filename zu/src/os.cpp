#include "zu/os.h"

#include <sys/time.h>

#include <mutex>
#include <stdexcept>

namespace zu::os {
namespace {

std::mutex overrideMutex;
std::function<TimeValue()> overrideClock;  // guarded by overrideMutex

}  // namespace

void gettimeofday(TimeValue* now) {
  {
    const std::lock_guard guard(overrideMutex);
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
  const std::lock_guard guard(overrideMutex);
  if (overrideClock) throw std::logic_error("zu::os: the clock is overridden already");
  overrideClock = std::move(clock);
}

ClockOverride::~ClockOverride() {
  const std::lock_guard guard(overrideMutex);
  overrideClock = nullptr;
}

}  // namespace zu::os

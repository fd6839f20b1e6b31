// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/frame_rate.h"

#include <cstdint>
#include <numeric>

#include "zu/os.h"

namespace {

constexpr int kIntervals = 30;

// Modulo 2^32, like everything that is measured here: a clock that is set back gives one huge
// interval, which the ring forgets again.
std::uint32_t microsecondsBetween(const zu::os::TimeValue& from, const zu::os::TimeValue& to) {
  return static_cast<std::uint32_t>(to.tv_sec - from.tv_sec) * 1000000U +
         static_cast<std::uint32_t>(to.tv_usec - from.tv_usec);
}

}  // namespace

double ComputeCurrentFrameRate(bool newFrame) {
  static bool static_bIsSet = false;
  static zu::os::TimeValue static_lastTime;
  static std::uint32_t aMesuredTime[kIntervals] = {};
  static std::int32_t nCptRingMesuredTime = 0;

  zu::os::TimeValue now;
  zu::os::gettimeofday(&now);
  if (!static_bIsSet) {
    static_bIsSet = true;
    static_lastTime = now;
    return 0;
  }

  const std::uint32_t elapsed = microsecondsBetween(static_lastTime, now);
  static_lastTime = now;
  if (newFrame) {
    aMesuredTime[nCptRingMesuredTime] = elapsed;
    nCptRingMesuredTime = (nCptRingMesuredTime + 1) % kIntervals;
  } else {
    aMesuredTime[nCptRingMesuredTime] += elapsed;
  }

  const std::uint32_t sum =
      std::accumulate(std::begin(aMesuredTime), std::end(aMesuredTime), std::uint32_t{0});
  if (sum <= 1) return 0;
  const double rate = kIntervals * 1000000.0 / sum;
  return static_cast<int>(rate * 10) / 10.0;
}

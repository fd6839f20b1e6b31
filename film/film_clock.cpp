// SPDX-License-Identifier: Apache-2.0
#include "film/film_clock.h"

#include <algorithm>
#include <utility>

namespace film {
namespace {

// Between two pictures, in microseconds. More is no pause: the clock was set.
constexpr std::int64_t kLongest = 3600LL * 1000000;

}  // namespace

std::int64_t FilmClock::next(std::int64_t taken) {
  const std::int64_t before = std::exchange(fTaken, taken);
  if (!std::exchange(fRuns, true)) return fTime;
  const bool isStep = taken > before && taken - kLongest <= before;
  fMicroseconds += isStep ? taken - before : 1000000 / fFps;
  return fTime = std::max(fTime + 1, fMicroseconds / 1000);
}

}  // namespace film

// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/film_pacing.h"

#include <utility>

namespace robot {

FilmPacing::Step FilmPacing::next(std::int64_t time) {
  const bool isFirst = fFrames == 0;
  const bool isSetBack = time < std::exchange(fLast, time);
  if (isFirst || isSetBack) fStart += time - due();  // so that this picture is due now
  const std::int64_t early = 1000000 / fFps / 4;
  const std::int64_t late = time - due() + early;
  if (late < 0) return {};
  std::int64_t repeats = late * fFps / 1000000;
  const std::int64_t most = std::int64_t{kLongestGap} * fFps;
  if (repeats > most) {  // as if the rest of the time had not been
    fStart += (repeats - most) * 1000000 / fFps;
    repeats = most;
  }
  fFrames += repeats + 1;
  return {static_cast<int>(repeats), true};
}

}  // namespace robot

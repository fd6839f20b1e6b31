// SPDX-License-Identifier: Apache-2.0
// How much of a link a subscriber's H.264 takes.
#pragma once

#include <chrono>
#include <optional>

#include "robot/streaming/link_state.h"

namespace robot {

// The most that makes a picture of this resolution better, and what is enough to see what goes on;
// bits a second.
int mostBitRate(int resolution);
int savingBitRate(int resolution);

// Grows while pictures go out as they come, and falls when one is held up. A link that stands still
// now and then is no narrow one: it costs little each time, and is soon made up for.
//
// Thread-bound; brings no clock of its own.
class BitRate {
 public:
  using Time = std::chrono::steady_clock::time_point;

  // Forgets what was found: begins with a little more than half of what the link carries.
  void begin(const LinkState& link, int most);
  // A picture is due. `link.isIdle`: the one before has gone out.
  void due(const LinkState& link, int most, Time now);

  // PictureEncoder::kMinBitRate to `most`; 0 before the beginning.
  int bitsPerSecond() const { return static_cast<int>(fRate); }

 private:
  void fall(const LinkState& link, Time now);
  void grow(const LinkState& link, Time now);
  double growthOf(const LinkState& link) const;
  void limit(int most);

  double fRate = 0;
  double fLimit = 0;  // with which the link could not keep up last; 0: none
  bool fIsHeldUp = false;
  Time fHeldUpAt;
  std::optional<Time> fFreeAt;   // at the end of that
  std::optional<Time> fBriefAt;  // the same of what was held up for a moment only
  Time fFallAfter;
  std::optional<Time> fGrownAt;
};

}  // namespace robot

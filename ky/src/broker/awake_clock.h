// SPDX-License-Identifier: Apache-2.0
// Time as somebody lives it who may be stopped.
#pragma once

#include <algorithm>
#include <chrono>

namespace Ky {

// Goes on only while its owner comes round: a loop that stood still for ten seconds, in a suspended
// laptop or beside too many compilers, has listened to nobody meanwhile and may blame nobody for
// silence. Thread-bound.
class AwakeClock {
 public:
  using Time = std::chrono::steady_clock::duration;

  // Each time the owner comes round.
  void tick(std::chrono::steady_clock::time_point now = std::chrono::steady_clock::now()) {
    fTime += std::min<Time>(now - fLastTick, kLongestTurn);
    fLastTick = now;
  }
  Time now() const { return fTime; }

 private:
  // A loop comes round every tenth of a second; what is longer was no listening.
  static constexpr std::chrono::milliseconds kLongestTurn{250};

  std::chrono::steady_clock::time_point fLastTick = std::chrono::steady_clock::now();
  Time fTime{0};
};

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// Which of a camera's pictures go into a film of a constant frame rate.
#pragma once

#include <cstdint>

namespace robot {

// A film's frames are due at equal distances from its first one. A picture becomes the frame that
// is due when it comes a quarter of that distance before, or later; of those that come earlier
// there are too many. A frame for which no picture came shows the one before once more.
//
// So no picture is doubled or lost while they come at the film's rate, each within a quarter of
// the distance of when it is due; and none is doubled while they come more often than that.
//
// Thread-bound.
class FilmPacing {
 public:
  // A camera that gives no picture for longer makes the film stand still for no longer than this,
  // and so does a computer's clock that is set forward meanwhile.
  static constexpr int kLongestGap = 2;  // seconds

  // `fps`: above 0.
  explicit FilmPacing(int fps) : fFps(fps) {}

  struct Step {
    int repeats = 0;       // how often the picture before is to be shown again first
    bool isTaken = false;  // then this one
  };

  // For each picture in turn, with the time of its capture in microseconds.
  Step next(std::int64_t time);

 private:
  std::int64_t due() const { return fStart + fFrames * 1000000 / fFps; }

  const int fFps;
  std::int64_t fFrames = 0;
  std::int64_t fStart = 0;
  std::int64_t fLast = 0;  // the time of the picture before, taken or not
};

}  // namespace robot

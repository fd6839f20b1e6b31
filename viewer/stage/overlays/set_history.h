// SPDX-License-Identifier: Apache-2.0
// What one source held, by the pictures in which it was seen.
#pragma once

#include <cstdint>
#include <deque>

#include "viewer/stage/overlays/overlay_source.h"

// The sets of the last second. All times are the robot's, in microseconds; `newest` is the capture
// time of the newest picture at hand when something was looked at. A source whose sets don't say
// when they were seen has the newest one only. Thread-bound.
class SetHistory {
 public:
  // Takes what the source holds now: the same again, or a new set. Nothing, from a detector, tells
  // no time: it is taken to have been seen as long ago as the set before it had been.
  void add(OverlaySet set, std::int64_t newest);

  bool isTimed() const { return !fSets.empty(); }
  // Null when none was added yet.
  OverlaySet newestSet() const;
  // The one that was seen nearest to `time`: a detector looks at fewer pictures than there are, and
  // maybe at none of those at hand. Of an untimed source the newest; null when there is none, or
  // only one that was seen later.
  OverlaySet seenAt(std::int64_t time) const;

  // Whether new sets came in the last two seconds, and how much later than its picture the latest
  // of them. What was there at the first look, or after a pause, is not counted: nobody knows when
  // it came.
  bool isFresh() const { return !fArrivals.empty(); }
  std::int64_t lateness() const;

  // Whether a detection of this age has outlived half a second, and the source's usual rhythm.
  bool isOld(std::int64_t age) const;

 private:
  struct Seen {
    std::int64_t time;
    OverlaySet set;
  };
  struct Arrival {
    std::int64_t time;
    std::int64_t lateness;
  };

  void addPlain(OverlaySet set);
  void addTimed(OverlaySet set, std::int64_t newest);
  void addNothing(OverlaySet set, std::int64_t newest);
  void forget(std::int64_t newest);

  OverlaySet fPlain;  // of an untimed source
  std::deque<Seen> fSets;
  std::deque<Arrival> fArrivals;
  std::int64_t fLookedAt = 0;  // the newest picture then
  std::int64_t fLastLateness = 0;
  std::int64_t fRhythm = 0;  // between the two newest sets; 0: not known
};

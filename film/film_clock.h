// SPDX-License-Identifier: Apache-2.0
// The times of a film's pictures, from those when they were taken.
#pragma once

#include <cstdint>

namespace film {

// Thread-bound.
class FilmClock {
 public:
  // `fps`: how far apart pictures are whose own times say nothing.
  explicit FilmClock(int fps) : fFps(fps) {}

  // When the film shows the next picture, in ms: 0 for the first, then always later. `taken`: by
  // the clock of whoever takes them, in microseconds, which may be set meanwhile: a step back, or
  // one of more than an hour, is no pause.
  std::int64_t next(std::int64_t taken);
  // What next() has said last.
  std::int64_t newest() const { return fTime; }

 private:
  const int fFps;
  bool fRuns = false;
  std::int64_t fTaken = 0;         // the newest one
  std::int64_t fTime = 0;          // in ms
  std::int64_t fMicroseconds = 0;  // the same, not rounded
};

}  // namespace film

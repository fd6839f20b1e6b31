// SPDX-License-Identifier: Apache-2.0
// What a ball is to look like, and how it is searched: the ball finder's named parameters.
#pragma once

#include <string>
#include <vector>

#include "ky/value.h"
#include "zu/mutex.h"

namespace robot {

// Radii and distances are in pixels of a picture of 320 x 240, whatever the pictures' size.
struct BallTuning {
  // The ball's colour, BT.601 for video, and how far from it a pixel may be, see colorMask().
  int y = 125;
  int u = 75;
  int v = 199;
  int tolerance = 24;
  int smallest = 8;   // radius
  int largest = 120;  // radius
  // 1 to 4: from only complete discs to those of which a part is hidden.
  int sensitivity = 2;
  // Only a ball near where one was before, that no more than `maxShift` pixels a second can have
  // brought there; anywhere again after a second without one.
  bool tracks = false;
  int maxShift = 200;
  bool several = false;    // all balls instead of the best one
  bool optimized = false;  // half the resolution and no smoothing: cheaper, and noisier
};

// The tuning that everybody shares. Thread-safe.
//
// A value is an array, [number] or [bool], but "radiusRange", [smallest, largest]:
// "CY", "CU", "CV", "colorTolerance" 0..255; "minRadius" 8..359; "radiusRange" with a smallest of
// 8..359 and a largest up to 360 above it; "sensitivity" 1..4; "useTracking"; "maxShift" 0..1000;
// "multiBall"; "Optimax". "minRadius" is the smallest of "radiusRange", and takes the largest along
// when it passes it.
class SharedBallTuning {
 public:
  BallTuning get() const;
  // Throws KyError: an unknown name, here and below; a value of another shape or out of range.
  void set(const std::string& name, const Ky::KyValue& value);
  Ky::KyValue get(const std::string& name) const;

  static std::vector<std::string> names();

 private:
  mutable zu::Mutex fMutex;
  BallTuning fTuning ZU_GUARDED_BY(fMutex);
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// Finds coloured toys: balls and ducks.
#pragma once

#include <array>
#include <atomic>
#include <memory>

#include "robot/extractors/detector.h"
#include "robot/extractors/toys/ball_detector.h"

namespace robot {

// Their numbers are those of the parameter "mode", less one.
enum Toy { kBall, kDuck };
constexpr int kToys = 2;

// Thread-safe.
struct ToySettings {
  std::atomic<int> resolution{1};  // in which is searched; for ducks at least 1
  std::array<std::atomic<bool>, kToys> wanted{};
};

// "BallDetected": see BallDetector.
// "duck": [[s, us], [[head alpha, head beta, head width, body alpha, body beta, body left, top,
// right, bottom], ..]], all floats.
// "DuckDetected": the same ducks as figures at their heads, [[x, y, diameter, thickness, shape,
// red, green, blue, description], ..], for that is how viewers read this key. The empty array for a
// toy that is not wanted.
class ToyDetector : public Detector {
 public:
  ToyDetector(std::shared_ptr<const ToySettings> settings,
              std::shared_ptr<const SharedBallTuning> tuning);

  std::vector<std::string> keys() const override {
    return {"BallDetected", "DuckDetected", "duck"};
  }
  std::vector<Finding> detect(const Frame& frame) override;

 private:
  const std::shared_ptr<const ToySettings> fSettings;
  BallDetector fBalls;
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// Finds balls in the camera's pictures.
#pragma once

#include <memory>

#include "robot/extractors/detector.h"
#include "robot/extractors/toys/ball_finder.h"

namespace robot {

// "BallDetected": [[s, us], [[number, 0, alpha, beta, radius], ..]], numbers from 1, the best ball
// first; the radius in pixels of a picture of 320 x 240.
class BallDetector : public Detector {
 public:
  explicit BallDetector(std::shared_ptr<const SharedBallTuning> tuning);

  std::vector<std::string> keys() const override { return {"BallDetected"}; }
  // Searches in pictures of 320 x 240.
  std::vector<Finding> detect(const Frame& frame) override;

  // What is to stand under the key.
  Ky::KyValue ballsIn(const Frame& frame, int resolution);

 private:
  const std::shared_ptr<const SharedBallTuning> fTuning;
  BallFinder fFinder;
};

}  // namespace robot

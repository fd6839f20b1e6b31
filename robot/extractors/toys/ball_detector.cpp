// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_detector.h"

#include "robot/camera/field_of_view.h"
#include "robot/extractors/toys/color_mask.h"

namespace robot {
namespace {

constexpr double kWidth = 320, kHeight = 240;  // of the picture in whose pixels balls are

Ky::KyValue entryOf(const Ball& ball, std::size_t index) {
  return Ky::KyValue::array({index + 1, 0, alphaAt(ball.centre.x / kWidth),
                             betaAt(ball.centre.y / kHeight), ball.radius});
}

}  // namespace

BallDetector::BallDetector(std::shared_ptr<const SharedBallTuning> tuning)
    : fTuning(std::move(tuning)) {
}

std::vector<Finding> BallDetector::detect(const Frame& frame) {
  return {{"BallDetected", ballsIn(frame, 1)}};
}

Ky::KyValue BallDetector::ballsIn(const Frame& frame, int resolution) {
  Ky::KyValue::Array entries;
  for (const Ball& ball : fFinder.find(yuvOf(frame, resolution), frame.time(), fTuning->get()))
    entries.push_back(entryOf(ball, entries.size()));
  return findings(frame, std::move(entries));
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/toy_detector.h"

#include <algorithm>

#include "robot/camera/field_of_view.h"
#include "robot/extractors/toys/color_mask.h"
#include "robot/extractors/toys/duck_finder.h"

namespace robot {
namespace {

using Ky::KyValue;

constexpr int kLeastForDucks = 1;  // a beak is small

KyValue anglesOf(const Duck& duck, cv::Size size) {
  const auto alpha = [&](double x) { return KyValue(alphaAt(x / size.width)); };
  const auto beta = [&](double y) { return KyValue(betaAt(y / size.height)); };
  return KyValue::array({alpha(duck.head.x), beta(duck.head.y),
                         alphaOver(2 * duck.headRadius / size.width), alpha(duck.body.x),
                         beta(duck.body.y), alpha(duck.bodyBox.x), beta(duck.bodyBox.y),
                         alpha(duck.bodyBox.br().x), beta(duck.bodyBox.br().y)});
}

// Looks as it does to a viewer that reads the angles.
KyValue figureOf(const Duck& duck, cv::Size size, std::size_t number) {
  constexpr float kDiameter = 5;  // pixels of the shown picture
  constexpr int kThickness = 2, kCross = 1;
  return KyValue::array({duck.head.x / size.width, duck.head.y / size.height, kDiameter, kThickness,
                         kCross, 0, 0, 200, "duck head  " + std::to_string(number)});
}

// What is to stand under the two keys.
struct Ducks {
  KyValue figures = KyValue::array();
  KyValue angles = KyValue::array();
};

Ducks ducksIn(const Frame& frame, int resolution) {
  const cv::Mat picture = yuvOf(frame, std::max(kLeastForDucks, resolution));
  KyValue::Array figures, angles;
  for (const Duck& duck : findDucks(picture)) {
    figures.push_back(figureOf(duck, picture.size(), figures.size() + 1));
    angles.push_back(anglesOf(duck, picture.size()));
  }
  return {std::move(figures), findings(frame, std::move(angles))};
}

}  // namespace

ToyDetector::ToyDetector(std::shared_ptr<const ToySettings> settings,
                         std::shared_ptr<const SharedBallTuning> tuning)
    : fSettings(std::move(settings)), fBalls(std::move(tuning)) {
}

std::vector<Finding> ToyDetector::detect(const Frame& frame) {
  const auto& wanted = fSettings->wanted;
  const int resolution = fSettings->resolution;
  KyValue balls = wanted[kBall] ? fBalls.ballsIn(frame, resolution) : KyValue::array();
  Ducks ducks = wanted[kDuck] ? ducksIn(frame, resolution) : Ducks();
  return {{"BallDetected", std::move(balls)},
          {"DuckDetected", std::move(ducks.figures)},
          {"duck", std::move(ducks.angles)}};
}

}  // namespace robot

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

KyValue duckEntry(const Duck& duck, cv::Size size) {
  const auto alpha = [&](double x) { return KyValue(alphaAt(x / size.width)); };
  const auto beta = [&](double y) { return KyValue(betaAt(y / size.height)); };
  return KyValue::array({alpha(duck.head.x), beta(duck.head.y),
                         alphaOver(2 * duck.headRadius / size.width), alpha(duck.body.x),
                         beta(duck.body.y), alpha(duck.bodyBox.x), beta(duck.bodyBox.y),
                         alpha(duck.bodyBox.br().x), beta(duck.bodyBox.br().y)});
}

KyValue ducksIn(const Frame& frame, int resolution) {
  const cv::Mat picture = yuvOf(frame, std::max(kLeastForDucks, resolution));
  KyValue::Array entries;
  for (const Duck& duck : findDucks(picture)) entries.push_back(duckEntry(duck, picture.size()));
  return findings(frame, std::move(entries));
}

}  // namespace

ToyDetector::ToyDetector(std::shared_ptr<const ToySettings> settings,
                         std::shared_ptr<const SharedBallTuning> tuning)
    : fSettings(std::move(settings)), fBalls(std::move(tuning)) {
}

std::vector<Finding> ToyDetector::detect(const Frame& frame) {
  const auto& wanted = fSettings->wanted;
  const int resolution = fSettings->resolution;
  const KyValue nothing = KyValue::array();
  return {{"BallDetected", wanted[kBall] ? fBalls.ballsIn(frame, resolution) : nothing},
          {"DuckDetected", wanted[kDuck] ? ducksIn(frame, resolution) : nothing}};
}

}  // namespace robot

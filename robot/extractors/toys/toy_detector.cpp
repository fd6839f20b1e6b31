#include "robot/extractors/toys/toy_detector.h"

#include <algorithm>

#include "robot/camera/field_of_view.h"
#include "robot/extractors/toys/duck_finder.h"

namespace robot {
namespace {

using Ky::KyValue;

constexpr double kWidth = 320, kHeight = 240;  // of the picture in whose pixels balls are
constexpr int kLeastForDucks = 1;              // a beak is small

KyValue ballEntry(const Ball& ball, std::size_t index) {
  return KyValue::array({index + 1, 0, alphaAt(ball.centre.x / kWidth),
                         betaAt(ball.centre.y / kHeight), ball.radius});
}

KyValue duckEntry(const Duck& duck, cv::Size size) {
  const auto alpha = [&](double x) { return KyValue(alphaAt(x / size.width)); };
  const auto beta = [&](double y) { return KyValue(betaAt(y / size.height)); };
  return KyValue::array({alpha(duck.head.x), beta(duck.head.y),
                         alphaOver(2 * duck.headRadius / size.width), alpha(duck.body.x),
                         beta(duck.body.y), alpha(duck.bodyBox.x), beta(duck.bodyBox.y),
                         alpha(duck.bodyBox.br().x), beta(duck.bodyBox.br().y)});
}

// Wraps the frame's own pixels, which are only read.
cv::Mat pictureOf(const Frame& frame, int resolution) {
  auto* pixels = const_cast<std::uint8_t*>(frame.pixels({resolution, kYuv444}).data());
  return {sizeOf(resolution), CV_8UC3, pixels};
}

}  // namespace

ToyDetector::ToyDetector(std::shared_ptr<const ToySettings> settings,
                         std::shared_ptr<const SharedBallTuning> tuning)
    : fSettings(std::move(settings)), fTuning(std::move(tuning)) {
}

std::vector<Finding> ToyDetector::detect(const Frame& frame) {
  const auto& wanted = fSettings->wanted;
  return {{"BallDetected", findings(frame, wanted[kBall] ? balls(frame) : KyValue::Array())},
          {"DuckDetected", findings(frame, wanted[kDuck] ? ducks(frame) : KyValue::Array())}};
}

KyValue::Array ToyDetector::balls(const Frame& frame) {
  KyValue::Array entries;
  const cv::Mat picture = pictureOf(frame, fSettings->resolution);
  for (const Ball& ball : fBallFinder.find(picture, frame.time(), fTuning->get()))
    entries.push_back(ballEntry(ball, entries.size()));
  return entries;
}

KyValue::Array ToyDetector::ducks(const Frame& frame) const {
  const cv::Mat picture = pictureOf(frame, std::max(kLeastForDucks, fSettings->resolution.load()));
  KyValue::Array entries;
  for (const Duck& duck : findDucks(picture)) entries.push_back(duckEntry(duck, picture.size()));
  return entries;
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_person.h"

#include <cmath>

#include "robot/camera/scene_item.h"
#include "robot/camera/sprite.h"

namespace robot {
namespace {

constexpr int kWidth = 220;
constexpr int kHeight = 420;
// The face in the sprite.
constexpr double kFaceX = 110;
constexpr double kFaceY = 106;
constexpr double kFaceSize = 132;

const cv::Scalar kHair(38, 52, 70), kSkin(150, 186, 226), kLight(166, 200, 236),
    kShade(122, 156, 200), kHollow(96, 126, 168), kDark(40, 44, 56), kLips(92, 92, 176);

void paintBody(Sprite::Brush& brush) {
  const cv::Scalar coat(110, 66, 44), trousers(70, 62, 60), scarf(60, 70, 190);
  for (const double x : {64.0, 120.0}) {
    brush.rectangle({x, 340, 36, 66}, trousers);
    brush.ellipse({x + 16, 408}, {24, 10}, {40, 48, 66});
  }
  brush.ellipse({kFaceX, 270}, {74, 76}, coat);
  brush.rectangle({36, 270, 148, 84}, coat);
  brush.line({kFaceX, 226}, {kFaceX, 354}, 3, {70, 40, 28});
  brush.rectangle({84, 168, 52, 40}, kShade);
  brush.ellipse({kFaceX, 208}, {44, 16}, scarf);
}

// Light falls from above: hollow eyes, a bright forehead, nose and cheeks.
void paintEye(Sprite::Brush& brush, double x) {
  brush.ellipse({x, 90}, {19, 13}, kShade);
  brush.ellipse({x, 90}, {16, 10}, kHollow);
  brush.ellipse({x, 92}, {12, 6}, {226, 230, 232});
  brush.ellipse({x, 91}, {6, 6.5}, kDark);
  brush.ellipse({x, 87}, {14, 3}, kDark);
  brush.ellipse({x, 77}, {18, 4}, kHair);
}

void paintHead(Sprite::Brush& brush) {
  brush.ellipse({kFaceX, 88}, {72, 84}, kHair);
  brush.ellipse({kFaceX, 104}, {60, 76}, kShade);
  brush.ellipse({kFaceX, 102}, {55, 72}, kSkin);
  brush.ellipse({kFaceX, 52}, {38, 18}, kLight);
  brush.ellipse({kFaceX - 30, 122}, {17, 14}, kLight);
  brush.ellipse({kFaceX + 30, 122}, {17, 14}, kLight);
  paintEye(brush, kFaceX - 27);
  paintEye(brush, kFaceX + 27);
  brush.rectangle({kFaceX - 6, 80, 12, 42}, kLight);
  brush.ellipse({kFaceX, 124}, {12, 7}, kLight);
  brush.ellipse({kFaceX, 129}, {11, 4}, kHollow);
  brush.ellipse({kFaceX, 149}, {22, 7}, kLips);
  brush.line({kFaceX - 20, 148}, {kFaceX + 20, 148}, 2.5, {50, 44, 92});
  brush.ellipse({kFaceX, 163}, {13, 4}, kShade);
  brush.ellipse({kFaceX, 171}, {15, 5}, kLight);
}

class Person : public SceneItem {
 public:
  void draw(cv::Mat& picture, std::int64_t time) const override {
    const cv::Point2d face = faceAt(time);
    fSprite.draw(picture, {cvRound(face.x - kFaceX + kWidth / 2.0),
                           cvRound(face.y - kFaceY + kHeight / 2.0)});
  }

  std::optional<SceneTruth> truthAt(std::int64_t time) const override {
    const cv::Point2d face = faceAt(time);
    return SceneTruth{"face", face.x / kSceneWidth, face.y / kSceneHeight, kFaceSize / kSceneWidth,
                      kFaceSize / kSceneHeight};
  }

 private:
  // In pixels.
  static cv::Point2d faceAt(std::int64_t time) {
    constexpr double kPeriod = 11;  // seconds
    const double phase = std::fmod(static_cast<double>(time) / 1e6, kPeriod) / kPeriod;
    return {114 + 10 * std::sin(2 * CV_PI * phase), 470 + 3 * std::sin(4 * CV_PI * phase)};
  }

  Sprite fSprite{{kWidth, kHeight}, [](Sprite::Brush& brush) {
                   paintBody(brush);
                   paintHead(brush);
                 }};
};

}  // namespace

std::unique_ptr<SceneItem> makePerson() {
  return std::make_unique<Person>();
}

}  // namespace robot

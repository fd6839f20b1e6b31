// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_targets.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "robot/camera/scene_item.h"
#include "robot/camera/sprite.h"
#include "robot/camera/tag_picture.h"

namespace robot {
namespace {

constexpr int kCell = 18;  // of the signboard's landmark, pixels
const cv::Point2d kSignboard(0.865, 0.46);
constexpr double kFoot = 0.80;  // where its posts end

void paintTag(Sprite::Brush& brush) {
  const cv::Mat cells = tagPicture(kSignboardNumber, 1);
  for (int y = 0; y < cells.rows; ++y)
    for (int x = 0; x < cells.cols; ++x)
      brush.rectangle(cv::Rect2d(x * kCell, y * kCell, kCell, kCell),
                      cv::Scalar::all(cells.at<std::uint8_t>(y, x)));
}

class Signboard : public SceneItem {
 public:
  void draw(cv::Mat& picture, std::int64_t) const override {
    const cv::Point centre(cvRound(kSignboard.x * picture.cols),
                           cvRound(kSignboard.y * picture.rows));
    for (const int side : {-1, 1})
      cv::rectangle(picture, {centre.x + side * 50 - 5, centre.y},
                    {centre.x + side * 50 + 5, cvRound(kFoot * picture.rows)}, {60, 90, 120},
                    cv::FILLED);
    fBoard.draw(picture, centre);
  }
  std::optional<SceneTruth> truthAt(std::int64_t) const override {
    const double side = (kTagCells - 2) * kCell;
    return SceneTruth{"signboard", kSignboard.x, kSignboard.y, side / kSceneWidth,
                      side / kSceneHeight};
  }

 private:
  const Sprite fBoard{{kTagCells * kCell, kTagCells* kCell}, paintTag};
};

void paintBall(Sprite::Brush& brush) {
  brush.ellipse({44, 44}, {44, 44}, {20, 90, 240});
  brush.ellipse({31, 27}, {8, 6}, {190, 220, 255});
}

void paintDuck(Sprite::Brush& brush) {
  const cv::Scalar yellow(30, 225, 255), beak(20, 110, 245), wing(20, 190, 235), black(30, 30, 30);
  brush.polygon({{0, 66}, {34, 76}, {28, 106}}, yellow);
  brush.ellipse({72, 98}, {62, 42}, yellow);
  brush.polygon({{132, 34}, {160, 46}, {132, 58}}, beak);
  brush.ellipse({106, 44}, {32, 32}, yellow);
  brush.ellipse({62, 98}, {30, 18}, wing);
  brush.ellipse({116, 36}, {5, 6}, black);
}

// Where something is that falls and bounces back, 0 on the ground and 1 at its highest.
double bounce(double seconds, double period) {
  const double at = std::fmod(seconds, period) / period;
  return 4 * at * (1 - at);
}

double swing(double seconds, double period) {
  return std::sin(2 * CV_PI * std::fmod(seconds, period) / period);
}

}  // namespace

std::unique_ptr<SceneItem> makeSignboard() {
  return std::make_unique<Signboard>();
}

std::unique_ptr<SceneItem> makeBall() {
  return std::make_unique<MovingSprite>("ball", Sprite({88, 88}, paintBall), [](double t) {
    return cv::Point2d(0.52 + 0.08 * swing(t, 12), 0.745 - 0.12 * bounce(t, 1.6));
  });
}

std::unique_ptr<SceneItem> makeDuck() {
  return std::make_unique<MovingSprite>("duck", Sprite({162, 142}, paintDuck), [](double t) {
    return cv::Point2d(0.78 + 0.08 * swing(t, 20), 0.735 + 0.004 * swing(t, 0.8));
  });
}

}  // namespace robot

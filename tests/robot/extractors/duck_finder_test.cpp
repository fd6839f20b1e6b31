// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/duck_finder.h"

#include <gtest/gtest.h>

#include "robot/camera/generated_scene.h"
#include "robot/camera/image_format.h"
#include "toy_pictures.h"

namespace robot {
namespace {

constexpr std::int64_t kStart = 1700000000000000;
constexpr std::int64_t kSecond = 1000000;

SceneTruth truthOfDuck(std::int64_t time) {
  for (const SceneTruth& truth : GeneratedScene(0).truthAt(time))
    if (truth.name == "duck") return truth;
  return {};
}

cv::Mat sceneAt(std::int64_t time, int resolution) {
  cv::Mat picture;
  cv::resize(GeneratedScene(0).render(time), picture, sizeOf(resolution), 0, 0, cv::INTER_AREA);
  return picture;
}

// Of the generated duck, as fractions of its own width and height.
const cv::Point2d kHead(106.0 / 162, 44.0 / 142), kBody(72.0 / 162, 98.0 / 142);

TEST(DuckFinder, FindsHeadAndBodyOfTheDuckInTheSceneFromTheSecondResolutionOn) {
  for (int resolution = 1; resolution < kResolutions; ++resolution)
    for (int second = 0; second < 20; second += 4) {
      const std::int64_t time = kStart + second * kSecond;
      const auto ducks = findDucks(yuvOf(sceneAt(time, resolution)));
      ASSERT_EQ(ducks.size(), 1u) << resolution << " " << second;
      const SceneTruth truth = truthOfDuck(time);
      const cv::Size size = sizeOf(resolution);
      const cv::Point2d corner(truth.x - truth.width / 2, truth.y - truth.height / 2);
      const auto at = [&](cv::Point2d part) {
        return cv::Point2d((corner.x + part.x * truth.width) * size.width,
                           (corner.y + part.y * truth.height) * size.height);
      };
      const double pixel = size.width / 320.0;  // of the picture that is shown
      EXPECT_LT(cv::norm(ducks[0].head - at(kHead)), 3 * pixel + 1) << resolution;
      EXPECT_LT(cv::norm(ducks[0].body - at(kBody)), 4 * pixel + 1) << resolution;
      EXPECT_NEAR(ducks[0].bodyBox.br().x, at({134.0 / 162, 0}).x, 3 * pixel + 1) << resolution;
      EXPECT_NEAR(ducks[0].bodyBox.br().y, at({0, 140.0 / 142}).y, 2 * pixel + 1) << resolution;
    }
}

TEST(DuckFinder, FindsNothingOnAGreyPicture) {
  for (const int level : {0, 128, 255})
    EXPECT_TRUE(findDucks(yuvOf(greyPicture(level))).empty()) << level;
}

TEST(DuckFinder, WantsAHeadOverABodyAndABeak) {
  EXPECT_EQ(findDucks(yuvOf(duckOf(24, 55, true))).size(), 1u);
  EXPECT_TRUE(findDucks(yuvOf(duckOf(24, 55, false))).empty()) << "no beak";
  EXPECT_TRUE(findDucks(yuvOf(duckOf(10, 45, true))).empty()) << "no head to speak of";
  EXPECT_TRUE(findDucks(yuvOf(duckOf(24, -55, true))).empty()) << "upside down";
}

TEST(DuckFinder, TakesNeitherTheCarNorABallForADuck) {
  cv::Mat scene = sceneAt(kStart + 3 * kSecond, 2);
  const auto ducks = findDucks(yuvOf(scene));
  ASSERT_EQ(ducks.size(), 1u);
  EXPECT_GT(ducks[0].body.x, 400) << "the car drives on the left";
  cv::Mat ball = greyPicture();
  drawDisc(ball, {160, 120}, 40, {30, 225, 255});
  EXPECT_TRUE(findDucks(yuvOf(ball)).empty());
}

}  // namespace
}  // namespace robot

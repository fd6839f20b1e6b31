// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/generated_scene.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include "robot/camera/scene_clock.h"

namespace robot {
namespace {

constexpr std::int64_t kStart = 1700000000000000;
constexpr std::int64_t kSecond = 1000000;

// The middle of everything that has this colour, as fractions of the picture.
cv::Point2d middleOf(const cv::Mat& picture, cv::Scalar bgr) {
  cv::Mat found;
  cv::inRange(picture, bgr, bgr, found);
  const cv::Rect box = cv::boundingRect(found);
  return {(box.x + box.width / 2.0) / picture.cols, (box.y + box.height / 2.0) / picture.rows};
}

SceneTruth truthOf(const GeneratedScene& scene, const std::string& name, std::int64_t time) {
  for (const SceneTruth& truth : scene.truthAt(time))
    if (truth.name == name) return truth;
  return {"nothing", -1, -1, 0, 0};
}

bool samePixels(const cv::Mat& a, const cv::Mat& b) {
  return cv::norm(a, b, cv::NORM_INF) == 0;
}

TEST(GeneratedScene, IsTheSameAtTheSameTimeAndAnotherAtAnother) {
  const GeneratedScene scene(0), twin(0);
  EXPECT_TRUE(samePixels(scene.render(kStart), twin.render(kStart)));
  EXPECT_FALSE(samePixels(scene.render(kStart), scene.render(kStart + kSecond)));
}

TEST(GeneratedScene, HasTheLargestResolutionsSize) {
  EXPECT_EQ(GeneratedScene(0).render(kStart).size(), cv::Size(1280, 960));
}

TEST(GeneratedScene, LooksDifferentToEachCamera) {
  cv::Mat difference;
  cv::absdiff(GeneratedScene(0).render(kStart), GeneratedScene(1).render(kStart), difference);
  EXPECT_GT(cv::mean(difference)[0], 40);
}

TEST(GeneratedScene, KnowsWhereItsThingsAre) {
  const GeneratedScene scene(0);
  for (int second = 0; second < 30; second += 3) {
    const std::int64_t time = kStart + second * kSecond;
    const SceneTruth truth = truthOf(scene, "balloon", time);
    const cv::Point2d red = middleOf(scene.render(time), {48, 58, 214});
    EXPECT_NEAR(red.x, truth.x, 3.0 / 1280) << second;
    // The basket below is not red: the red part's middle is 24 pixels above the balloon's.
    EXPECT_NEAR(red.y, truth.y - 24.0 / 960, 4.0 / 960) << second;
  }
}

TEST(GeneratedScene, KnowsWhereTheTramIs) {
  const GeneratedScene scene(1);
  for (int second = 0; second < 16; second += 3) {
    const std::int64_t time = kStart + second * kSecond;
    const cv::Point2d green = middleOf(scene.render(time), {96, 150, 44});
    EXPECT_NEAR(green.x, truthOf(scene, "tram", time).x, 3.0 / 1280) << second;
  }
}

TEST(GeneratedScene, KnowsWhereTheBallIs) {
  const GeneratedScene scene(0);
  for (int step = 0; step < 24; ++step) {
    const std::int64_t time = kStart + step * kSecond / 2;
    const SceneTruth truth = truthOf(scene, "ball", time);
    const cv::Point2d orange = middleOf(scene.render(time), {20, 90, 240});
    EXPECT_NEAR(orange.x, truth.x, 2.0 / 1280) << step;
    EXPECT_NEAR(orange.y, truth.y, 2.0 / 960) << step;
    EXPECT_NEAR(truth.width * 1280, 88, 0.01);
  }
}

TEST(GeneratedScene, KeepsWhatIsToBeFoundApartAndInThePicture) {
  const GeneratedScene scene(0);
  const std::vector<std::string> targets = {"face", "logo", "picture", "signboard", "ball", "duck"};
  const auto boxOf = [](const SceneTruth& truth) {
    return cv::Rect2d(truth.x - truth.width / 2, truth.y - truth.height / 2, truth.width,
                      truth.height);
  };
  for (int step = 0; step < 300; ++step)
    for (const SceneTruth& thing : scene.truthAt(kStart + step * kSecond / 5))
      for (const std::string& name : targets) {
        const SceneTruth target = truthOf(scene, name, kStart + step * kSecond / 5);
        const cv::Rect2d box = boxOf(target);
        EXPECT_TRUE((cv::Rect2d(0, 0, 1, 1) & box) == box) << name << " leaves the picture";
        if (thing.name != name) {
          EXPECT_TRUE((boxOf(thing) & box).empty()) << thing.name << " meets " << name;
        }
      }
}

TEST(GeneratedScene, LetsACarLeaveThePictureAndComeBack) {
  const GeneratedScene scene(0);
  bool outside = false, inside = false;
  for (int step = 0; step < 80; ++step) {
    const double x = truthOf(scene, "car", kStart + step * kSecond / 10).x;
    outside = outside || x < 0 || x > 1;
    inside = inside || (x > 0 && x < 1);
    scene.render(kStart + step * kSecond / 10);
  }
  EXPECT_TRUE(outside && inside);
}

TEST(GeneratedScene, ShowsTheTimeInItsClock) {
  const GeneratedScene scene(0);
  const cv::Rect plate(SceneClock::kX, SceneClock::kY, SceneClock::kWidth, SceneClock::kHeight);
  const cv::Mat now = scene.render(kStart)(plate), soon = scene.render(kStart + 1000)(plate);
  EXPECT_FALSE(samePixels(now, soon));
}

TEST(SceneClock, WritesHoursToMilliseconds) {
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(SceneClock::textAt(1700000003123999), "22:13:23.123");
}

class Dot : public SceneItem {
 public:
  void draw(cv::Mat& picture, std::int64_t) const override {
    cv::circle(picture, {640, 480}, 9, {1, 2, 3}, cv::FILLED);
  }
};

TEST(GeneratedScene, DrawsWhatIsAddedInFront) {
  GeneratedScene scene(0);
  const std::size_t things = scene.truthAt(kStart).size();
  scene.add(std::make_unique<Dot>());
  EXPECT_EQ(scene.render(kStart).at<cv::Vec3b>(480, 640), cv::Vec3b(1, 2, 3));
  EXPECT_EQ(scene.truthAt(kStart).size(), things) << "a dot without truth has none";
}

}  // namespace
}  // namespace robot

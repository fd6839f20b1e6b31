// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_finder.h"

#include <gtest/gtest.h>

#include "robot/camera/image_format.h"
#include "toy_pictures.h"

namespace robot {
namespace {

constexpr std::int64_t kSecond = 1000000;

std::vector<Ball> ballsIn(const cv::Mat& bgr, const BallTuning& tuning = {}) {
  return BallFinder().find(yuvOf(bgr), 0, tuning);
}

BallTuning several() {
  BallTuning tuning;
  tuning.several = true;
  return tuning;
}

cv::Mat pictureWith(cv::Point2d centre, double radius, cv::Scalar bgr = kOrangeBall) {
  cv::Mat picture = greyPicture();
  drawDisc(picture, centre, radius, bgr);
  return picture;
}

TEST(BallFinder, FindsABallsCentreAndRadius) {
  for (const double radius : {9.0, 14.5, 40.0, 90.0})
    for (const cv::Point2d centre : {cv::Point2d(160, 120), cv::Point2d(150.5, 118.5)}) {
      const auto balls = ballsIn(pictureWith(centre, radius));
      ASSERT_EQ(balls.size(), 1u) << radius;
      EXPECT_LT(cv::norm(balls[0].centre - centre), 0.8) << radius;
      EXPECT_NEAR(balls[0].radius, radius, 1.0);
    }
}

TEST(BallFinder, TellsTheSameInEveryResolution) {
  for (int resolution = 0; resolution < kResolutions; ++resolution) {
    const double scale = sizeOf(resolution).width / 320.0;
    cv::Mat picture = greyPicture(100, sizeOf(resolution));
    drawDisc(picture, cv::Point2d(200, 90) * scale, 20 * scale, kOrangeBall);
    const auto balls = ballsIn(picture);
    ASSERT_EQ(balls.size(), 1u) << resolution;
    EXPECT_LT(cv::norm(balls[0].centre - cv::Point2d(200, 90)), 1.2) << resolution;
    EXPECT_NEAR(balls[0].radius, 20, 1.5) << resolution;
  }
}

TEST(BallFinder, FindsNothingOnAGreyPicture) {
  for (const int level : {0, 128, 255})
    EXPECT_TRUE(ballsIn(greyPicture(level), several()).empty()) << level;
}

TEST(BallFinder, TakesOnlyRoundThingsOfItsColourForBalls) {
  EXPECT_TRUE(ballsIn(pictureWith({160, 120}, 20, kGreenBall)).empty()) << "green";
  cv::Mat bar = greyPicture();
  cv::rectangle(bar, {100, 100, 90, 25}, kOrangeBall, cv::FILLED);
  EXPECT_TRUE(ballsIn(bar).empty()) << "a bar";
  cv::Mat ring = greyPicture();
  cv::circle(ring, {160, 120}, 40, kOrangeBall, 8);
  EXPECT_TRUE(ballsIn(ring).empty()) << "a ring";
}

TEST(BallFinder, SeesABallInUnevenLightAndNoise) {
  cv::RNG random(20);
  for (const double light : {0.75, 1.0}) {
    cv::Mat picture = pictureWith({160, 120}, 25, kOrangeBall * light);
    cv::Mat noise(picture.size(), CV_16SC3);
    random.fill(noise, cv::RNG::NORMAL, 0, 6);
    cv::add(picture, noise, picture, cv::noArray(), CV_8U);
    const auto balls = ballsIn(picture);
    ASSERT_EQ(balls.size(), 1u) << light;
    EXPECT_LT(cv::norm(balls[0].centre - cv::Point2d(160, 120)), 2) << light;
  }
}

// The way to a ball of another colour that a user goes with four sliders.
TEST(BallFinder, IsTunedToABallOfAnotherColour) {
  const cv::Mat picture = pictureWith({100, 80}, 18, kGreenBall);
  const cv::Mat yuv = yuvOf(picture);
  const auto green = yuv.at<cv::Vec3b>(80, 100);
  SharedBallTuning tuning;
  const auto set = [&](const char* name, int value) {
    tuning.set(name, Ky::KyValue::array({value}));
    return BallFinder().find(yuv, 0, tuning.get()).size();
  };
  EXPECT_EQ(set("CY", green[0] - 12), 0u);
  EXPECT_EQ(set("CU", green[1] + 20), 0u);
  EXPECT_EQ(set("CV", green[2] - 20), 0u) << "near, but not near enough";
  EXPECT_EQ(set("colorTolerance", 35), 1u);
  EXPECT_EQ(set("colorTolerance", 3), 0u);
}

TEST(BallFinder, KeepsToTheRadii) {
  BallTuning tuning;
  const cv::Mat picture = pictureWith({160, 120}, 20);
  tuning.smallest = 22;
  EXPECT_TRUE(ballsIn(picture, tuning).empty());
  tuning.smallest = 18;
  EXPECT_EQ(ballsIn(picture, tuning).size(), 1u);
  tuning.largest = 19;
  EXPECT_TRUE(ballsIn(picture, tuning).empty());
}

TEST(BallFinder, SeesMoreOfHiddenBallsTheMoreSensitiveItIs) {
  std::vector<std::size_t> found;
  for (int sensitivity = 1; sensitivity <= 4; ++sensitivity) {
    BallTuning tuning = several();
    tuning.sensitivity = sensitivity;
    std::size_t count = 0;
    for (const int hidden : {0, 12, 18, 24}) {  // of the disc's 60 rows
      cv::Mat picture = pictureWith({160, 120}, 30);
      cv::rectangle(picture, {0, 0, 320, 90 + hidden}, cv::Scalar::all(128), cv::FILLED);
      count += ballsIn(picture, tuning).size();
    }
    found.push_back(count);
  }
  EXPECT_EQ(found, (std::vector<std::size_t>{1, 2, 3, 4}));
}

TEST(BallFinder, TellsTheBestBallOrAllOfThem) {
  cv::Mat picture = pictureWith({60, 60}, 12);
  drawDisc(picture, {200, 150}, 30, kOrangeBall);
  drawDisc(picture, {100, 200}, 20, kOrangeBall);
  const auto best = ballsIn(picture);
  ASSERT_EQ(best.size(), 1u);
  EXPECT_NEAR(best[0].radius, 30, 1);
  const auto all = ballsIn(picture, several());
  ASSERT_EQ(all.size(), 3u);
  EXPECT_NEAR(all[1].radius, 20, 1);
  EXPECT_NEAR(all[2].radius, 12, 1);
}

TEST(BallFinder, OptimizedFindsTheSameLessExactly) {
  BallTuning tuning;
  tuning.optimized = true;
  const auto balls = ballsIn(pictureWith({160, 120}, 20), tuning);
  ASSERT_EQ(balls.size(), 1u);
  EXPECT_LT(cv::norm(balls[0].centre - cv::Point2d(160, 120)), 2);
  EXPECT_NEAR(balls[0].radius, 20, 2);
}

TEST(BallFinder, CutsOffThreads) {
  cv::Mat picture = pictureWith({160, 120}, 20);
  cv::line(picture, {160, 120}, {160, 60}, kOrangeBall);
  const auto balls = ballsIn(picture);
  ASSERT_EQ(balls.size(), 1u);
  EXPECT_LT(cv::norm(balls[0].centre - cv::Point2d(160, 120)), 1.5);
}

struct Track {
  BallFinder finder;
  BallTuning tuning;
  std::size_t at(std::int64_t time, double x) {
    return finder.find(yuvOf(pictureWith({x, 120}, 20)), time, tuning).size();
  }
};

TEST(BallFinder, TracksABallNoFasterThanItMayBe) {
  Track track;
  track.tuning.tracks = true;
  track.tuning.maxShift = 100;
  EXPECT_EQ(track.at(0, 100), 1u) << "anywhere at first";
  EXPECT_EQ(track.at(kSecond / 10, 109), 1u);
  EXPECT_EQ(track.at(kSecond / 5, 180), 0u) << "too far away";
  EXPECT_EQ(track.at(kSecond / 2, 145), 1u) << "time enough by now";
  EXPECT_EQ(track.at(kSecond * 3 / 2, 300), 1u) << "lost for a second: anywhere again";
}

TEST(BallFinder, FindsABallAnywhereWhenItDoesNotTrack) {
  Track track;
  EXPECT_EQ(track.at(0, 60), 1u);
  EXPECT_EQ(track.at(kSecond / 10, 250), 1u);
}

TEST(BallFinder, TracksAfterTheClockWentBack) {
  Track track;
  track.tuning.tracks = true;
  EXPECT_EQ(track.at(100 * kSecond, 60), 1u);
  EXPECT_EQ(track.at(kSecond, 250), 1u);
}

}  // namespace
}  // namespace robot

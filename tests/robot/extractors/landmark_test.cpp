// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdio>

#include "landmark_views.h"
#include "robot/camera/field_of_view.h"
#include "robot/extractors/landmarks/landmark_detector.h"
#include "robot/in_process_robot.h"

namespace robot {
namespace {

using Ky::KyValue;

KyValue landmarksIn(const cv::Mat& picture) {
  LandmarkDetector detector;
  return detector.detect(Frame(picture, 3000004, 0)).at(0).value;
}

// A landmark at `corner`, with its margin, on grey.
cv::Mat pictureWith(int number, cv::Point corner, int cell = 10) {
  cv::Mat picture(480, 640, CV_8UC3, cv::Scalar::all(120));
  cv::Mat tag;
  cv::cvtColor(tagPicture(number, cell), tag, cv::COLOR_GRAY2BGR);
  tag.copyTo(picture(cv::Rect(corner, tag.size())));
  return picture;
}

TEST(LandmarkDetector, TellsNumberAnglesAndSizeOfALandmark) {
  const KyValue found = landmarksIn(pictureWith(42, {100, 50}));
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0], KyValue::array({3, 4}));
  ASSERT_EQ(found[1].size(), 1u);
  const KyValue& shape = found[1][0][0];
  EXPECT_EQ(found[1][0][1], KyValue::array({42}));
  EXPECT_EQ(shape[0], KyValue(0));
  EXPECT_NEAR(shape[1].asFloat(), alphaAt(150.0 / 640), 0.001);
  EXPECT_NEAR(shape[2].asFloat(), betaAt(100.0 / 480), 0.001);
  EXPECT_NEAR(shape[3].asFloat(), alphaOver(80.0 / 640), 0.003);
  EXPECT_NEAR(shape[4].asFloat(), betaOver(80.0 / 480), 0.003);
  EXPECT_NEAR(shape[5].asFloat(), 0, 0.02) << "it stands upright";
}

TEST(LandmarkDetector, MakesTheViewersDiameterPositive) {
  const KyValue found = landmarksIn(pictureWith(7, {200, 200}));
  const float sizeX = found[1][0][0][3].asFloat();
  EXPECT_NEAR(sizeX / (-kHalfWidthAngle - kHalfWidthAngle) * 320.0, 40, 1.5);
}

TEST(LandmarkDetector, TellsHowALandmarkIsTurned) {
  cv::Mat turned;
  cv::rotate(pictureWith(3, {200, 200}), turned, cv::ROTATE_90_COUNTERCLOCKWISE);
  EXPECT_NEAR(landmarksIn(turned)[1][0][0][5].asFloat(), CV_PI / 2, 0.02);
}

TEST(LandmarkDetector, FindsSeveral) {
  cv::Mat picture = pictureWith(1, {30, 30});
  const cv::Rect other(400, 300, 100, 100);
  pictureWith(2, other.tl())(other).copyTo(picture(other));
  const KyValue found = landmarksIn(picture);
  ASSERT_EQ(found[1].size(), 2u);
  EXPECT_EQ(found[1][0][1][0].asInt() + found[1][1][1][0].asInt(), 3);
}

TEST(LandmarkDetector, FindsNothingOnAGreyPicture) {
  for (const int level : {0, 128, 255})
    EXPECT_EQ(landmarksIn(cv::Mat(480, 640, CV_8UC3, cv::Scalar::all(level))), KyValue::array());
}

TEST(LandmarkDetector, TakesABlackSquareWithoutCellsForNone) {
  cv::Mat picture(480, 640, CV_8UC3, cv::Scalar::all(200));
  cv::rectangle(picture, {200, 200, 120, 120}, cv::Scalar::all(10), cv::FILLED);
  EXPECT_EQ(landmarksIn(picture), KyValue::array());
}

TEST(TagPicture, RefusesANumberThatThereIsNot) {
  EXPECT_EQ(errorText([] { tagPicture(587, 4); }),
            "there is no landmark 587; their numbers are 0 to 586");
  EXPECT_THROW(tagPicture(-1, 4), Ky::KyError);
  EXPECT_EQ(tagPicture(586, 4).size(), cv::Size(40, 40));
}

class LandmarkViews : public testing::TestWithParam<ViewRow> {};

#ifdef PERISCOPE_SANITIZED
constexpr int kViews = 10;
#else
constexpr int kViews = 100;
#endif

TEST_P(LandmarkViews, TellTheirNumberInNinetyNineOfAHundred) {
  LandmarkCamera camera(20);
  TagFinder finder;
  int right = 0, wrong = 0;
  double farthest = 0;
  for (int i = 0; i < kViews; ++i) {
    const SeenLandmark seen = camera.take(GetParam().view);
    cv::Mat grey;
    cv::cvtColor(seen.picture, grey, cv::COLOR_BGR2GRAY);
    bool isRight = false;
    for (const Tag& tag : finder.find(grey)) {
      if (tag.number != seen.number) {
        ++wrong;
        continue;
      }
      isRight = true;
      farthest = std::max(farthest, cv::norm(tag.centre - seen.centre));
    }
    right += isRight ? 1 : 0;
  }
  std::printf("%-14s right %3d of %d, wrong %d, centre at most %.2f pixels off\n", GetParam().name,
              right, kViews, wrong, farthest);
  EXPECT_GE(right * 100, kViews * 99);
  EXPECT_EQ(wrong, 0);
  EXPECT_LT(farthest, 2);
}

INSTANTIATE_TEST_SUITE_P(Rows, LandmarkViews, testing::ValuesIn(kViewRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/toy_detector.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "robot/camera/field_of_view.h"
#include "toy_pictures.h"

namespace robot {
namespace {

using Ky::KyValue;

constexpr std::int64_t kTime = 1700000003000004;
const KyValue kNothing = KyValue::array();

class ToyDetectorTest : public testing::Test {
 protected:
  ToyDetectorTest() { fSettings->wanted[kDuck] = true; }

  // Null when the detector doesn't mention the key.
  KyValue found(const std::string& key, const Frame& frame) {
    for (const Finding& finding : fDetector.detect(frame))
      if (finding.key == key) return finding.value;
    return {};
  }

  std::shared_ptr<ToySettings> fSettings = std::make_shared<ToySettings>();
  ToyDetector fDetector{fSettings, std::make_shared<SharedBallTuning>()};
};

// Heads at (175, 95) and (495, 95), in 640 x 480.
cv::Mat twoDucks() {
  cv::Mat picture = greyPicture(128, {640, 480});
  for (const int left : {0, 320}) duckOf(24, 55, true).copyTo(picture(cv::Rect(left, 0, 320, 240)));
  return picture;
}

TEST_F(ToyDetectorTest, DrawsACrossAtTheHeadOfEachDuck) {
  fSettings->resolution = 2;
  const KyValue figures = found("DuckDetected", Frame(twoDucks(), kTime, 0));
  ASSERT_EQ(figures.size(), 2u);
  std::vector<double> places;
  for (std::size_t i = 0; i < 2; ++i) {
    KyValue::Array record = figures[i].asArray();
    ASSERT_EQ(record.size(), 9u);
    for (const std::size_t measure : {0, 1, 2}) EXPECT_TRUE(record[measure].isFloat()) << measure;
    places.push_back(record[0].asDouble() * 640);
    EXPECT_NEAR(record[1].asDouble() * 480, 95, 2);
    record.erase(record.begin(), record.begin() + 2);
    EXPECT_EQ(
        record,
        KyValue::array({5.0, 2, 1, 0, 0, 200, "duck head  " + std::to_string(i + 1)}).asArray());
  }
  std::sort(places.begin(), places.end());
  EXPECT_NEAR(places[0], 175, 2);
  EXPECT_NEAR(places[1], 495, 2);
}

TEST_F(ToyDetectorTest, TellsTheAnglesOfTheSameDucksInTheSameOrder) {
  fSettings->resolution = 2;
  const Frame frame(twoDucks(), kTime, 0);
  const KyValue figures = found("DuckDetected", frame), ducks = found("duck", frame);
  ASSERT_EQ(ducks.size(), 2u);
  EXPECT_EQ(ducks[0], KyValue::array({1700000003, 4}));
  ASSERT_EQ(ducks[1].size(), 2u);
  ASSERT_EQ(figures.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_FLOAT_EQ(ducks[1][i][0].asFloat(), alphaAt(figures[i][0].asDouble()));
    EXPECT_FLOAT_EQ(ducks[1][i][1].asFloat(), betaAt(figures[i][1].asDouble()));
  }
}

TEST_F(ToyDetectorTest, TellsHowWideAHeadIs) {
  fSettings->resolution = 2;
  const KyValue ducks = found("duck", Frame(twoDucks(), kTime, 0));
  ASSERT_EQ(ducks.size(), 2u);
  ASSERT_EQ(ducks[1].size(), 2u);
  // The neck is the body's, so that the largest disc in what is left is a little smaller.
  for (const KyValue& duck : ducks[1].asArray())
    EXPECT_NEAR(duck[2].asFloat(), alphaOver(48.0 / 640), -alphaOver(6.0 / 640));
}

TEST_F(ToyDetectorTest, EmptiesAllItsKeysWhereThereIsNothing) {
  fSettings->wanted[kBall] = true;
  const Frame frame(greyPicture(), kTime, 0);
  for (const std::string& key : fDetector.keys()) EXPECT_EQ(found(key, frame), kNothing) << key;
}

TEST_F(ToyDetectorTest, SaysNothingOfDucksThatNobodyWants) {
  fSettings->wanted[kDuck] = false;
  const Frame frame(twoDucks(), kTime, 0);
  for (const char* key : {"DuckDetected", "duck"}) EXPECT_EQ(found(key, frame), kNothing) << key;
}

}  // namespace
}  // namespace robot

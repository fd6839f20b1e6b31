// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/automatic_modes.h"

#include <gtest/gtest.h>

namespace robot {
namespace {

const cv::Scalar kDark(25, 30, 35);
const cv::Scalar kBright(200, 210, 205);
const cv::Scalar kBlack(0, 0, 0);
const cv::Scalar kBluish(140, 110, 80);

void adaptFor(CameraParameters& parameters, const cv::Scalar& mean, int pictures = 60) {
  for (int i = 0; i < pictures; ++i) adapt(parameters, mean);
}

cv::Scalar shown(const CameraParameters& parameters, const cv::Scalar& mean) {
  return cv::mean(parameters.controls().apply(cv::Mat(8, 8, CV_8UC3, mean)));
}

struct Light {
  int model;
  std::vector<int> modes;
  cv::Scalar mean;
};

class AutomaticLight : public testing::TestWithParam<Light> {};

TEST_P(AutomaticLight, BringsAPictureToMediumLightAndStays) {
  const auto& [model, modes, mean] = GetParam();
  CameraParameters parameters(model);
  for (const int mode : modes) parameters.set(mode, 1);
  ASSERT_TRUE(isAutomatic(parameters));
  adaptFor(parameters, mean);
  EXPECT_NEAR(shown(parameters, mean)[1], 118, 12);
  const PictureControls before = parameters.controls();
  adaptFor(parameters, mean);
  EXPECT_EQ(parameters.controls(), before);
}

INSTANTIATE_TEST_SUITE_P(Modes, AutomaticLight,
                         testing::Values(Light{1, {kAutoExposition, kAutoGain}, kDark},
                                         Light{1, {kAutoExposition, kAutoGain}, kBright},
                                         Light{1, {kAutoExposition}, kBright},
                                         Light{1, {kAutoGain}, kDark},
                                         Light{1, {kAutoGain}, kBright},
                                         Light{2, {kAutoExposition}, kDark},
                                         Light{2, {kAutoExposition}, kBright}));

TEST(AutomaticModes, MoveALittleWithEachPicture) {
  CameraParameters parameters(1);
  parameters.set(kAutoExposition, 1);
  int before = parameters.get(kExposure);
  for (int picture = 0; picture < 5; ++picture) {
    adapt(parameters, cv::Scalar::all(80));
    EXPECT_GT(parameters.get(kExposure), before);
    before = parameters.get(kExposure);
    EXPECT_TRUE(picture > 0 || before < 300) << "not all at once";
  }
}

TEST(AutomaticModes, MoveOnlyWhatTheyGovern) {
  CameraParameters parameters(1);
  parameters.set(kAutoGain, 1);
  adaptFor(parameters, kDark);
  EXPECT_EQ(parameters.get(kExposure), 255);
  EXPECT_EQ(parameters.get(kRedChroma), 128);
  parameters = CameraParameters(1);
  parameters.set(kAutoExposition, 1);
  adaptFor(parameters, kDark);
  EXPECT_EQ(parameters.get(kExposure), 510) << "as far as it goes";
  EXPECT_EQ(parameters.get(kGain), 32);
}

TEST(AutomaticModes, DoNothingWhileOff) {
  CameraParameters parameters(1);
  EXPECT_FALSE(isAutomatic(parameters));
  adaptFor(parameters, kDark);
  EXPECT_EQ(parameters.controls(), PictureControls());
}

TEST(AutomaticModes, LeaveWhatTheyFoundWhenSwitchedOff) {
  CameraParameters parameters(1);
  parameters.set(kAutoExposition, 1);
  adaptFor(parameters, kBright);
  const int found = parameters.get(kExposure);
  EXPECT_LT(found, 200);
  parameters.set(kAutoExposition, 0);
  adaptFor(parameters, kDark);
  EXPECT_EQ(parameters.get(kExposure), found);
}

TEST(AutomaticModes, AreCorrectedUpAndDown) {
  double before = 0;
  for (int correction = -6; correction <= 6; ++correction) {
    CameraParameters parameters(1);
    parameters.set(kAutoExposition, 1);
    parameters.set(kAutoGain, 1);
    parameters.set(kExposureCorrection, correction);
    adaptFor(parameters, kDark, 100);
    const double now = shown(parameters, kDark)[1];
    EXPECT_GT(now, before * 1.05) << correction;
    before = now;
  }
}

TEST(AutomaticModes, SurviveBlackness) {
  for (const int model : {1, 2}) {
    CameraParameters parameters(model);
    for (const int mode : {kAutoExposition, kAutoWhiteBalance}) parameters.set(mode, 1);
    parameters.set(kExposure, 0);
    adaptFor(parameters, kBlack);
    EXPECT_EQ(parameters.get(kExposure), 510);
    adaptFor(parameters, kBright);
    EXPECT_LT(parameters.get(kExposure), 255);
  }
}

TEST(AutomaticModes, WhiteBalanceTakesATintAway) {
  for (const int model : {1, 2}) {
    CameraParameters parameters(model);
    parameters.set(kAutoWhiteBalance, 1);
    adaptFor(parameters, kBluish);
    const cv::Scalar grey = shown(parameters, kBluish);
    EXPECT_NEAR(grey[0], grey[2], 4) << model;
    EXPECT_EQ(parameters.get(kExposure), 255);
  }
}

TEST(AutomaticModes, LookAtTheWholePicture) {
  cv::Mat picture(480, 640, CV_8UC3, cv::Scalar(10, 20, 30));
  picture(cv::Rect(320, 0, 320, 480)) = cv::Scalar(110, 120, 130);
  const cv::Scalar mean = meanColour(picture);
  EXPECT_NEAR(mean[0], 60, 2);
  EXPECT_NEAR(mean[1], 70, 2);
  EXPECT_NEAR(mean[2], 80, 2);
}

}  // namespace
}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/camera_parameters.h"

#include <gtest/gtest.h>

#include "ky/error.h"

namespace robot {
namespace {

struct Expected {
  int id, minimum, maximum;
};

void expectRanges(int model, const std::vector<Expected>& expected) {
  CameraParameters parameters(model);
  EXPECT_EQ(parametersOf(model).size(), expected.size());
  for (const auto& [id, minimum, maximum] : expected) {
    EXPECT_GE(parameters.get(id), minimum) << id;
    EXPECT_LE(parameters.get(id), maximum) << id;
    parameters.set(id, minimum);
    EXPECT_EQ(parameters.get(id), minimum);
    parameters.set(id, maximum);
    EXPECT_EQ(parameters.get(id), maximum);
    EXPECT_THROW(parameters.set(id, minimum - 1), Ky::KyError) << id;
    EXPECT_THROW(parameters.set(id, maximum + 1), Ky::KyError) << id;
    EXPECT_EQ(parameters.get(id), maximum) << "a refused value changes nothing";
  }
}

TEST(CameraParameters, OfModelOneHaveTheirRanges) {
  expectRanges(1, {{0, 0, 255},
                   {1, 0, 127},
                   {2, 0, 255},
                   {3, -180, 180},
                   {4, 0, 255},
                   {5, 0, 255},
                   {6, 0, 255},
                   {7, 0, 1},
                   {8, 0, 1},
                   {11, 0, 1},
                   {12, 0, 1},
                   {13, 0, 1},
                   {17, 0, 510},
                   {21, -6, 6}});
}

TEST(CameraParameters, OfModelTwoHaveTheirRanges) {
  expectRanges(2, {{0, 0, 255},
                   {1, 0, 127},
                   {2, 0, 255},
                   {3, 0, 0},
                   {6, 32, 255},
                   {7, 0, 1},
                   {8, 0, 1},
                   {11, 0, 1},
                   {12, 0, 1},
                   {17, 0, 510},
                   {33, -120, -36}});
}

TEST(CameraParameters, SayWhichValuesThereAre) {
  CameraParameters parameters(1);
  try {
    parameters.set(kExposure, 600);
    FAIL();
  } catch (const Ky::KyError& error) {
    EXPECT_STREQ(error.what(), "parameter 17 (exposure) can't be 600; it goes from 0 to 510");
  }
}

TEST(CameraParameters, SayThatThereIsNoSuchParameter) {
  const CameraParameters parameters(1);
  for (const int id : {-1, 9, 33, 99}) EXPECT_THROW(parameters.get(id), Ky::KyError) << id;
}

TEST(CameraParameters, BeginWithControlsThatChangeNothing) {
  EXPECT_EQ(CameraParameters(1).controls(), PictureControls());
  EXPECT_EQ(CameraParameters(2).controls(), PictureControls());
}

TEST(CameraParameters, BecomeControls) {
  CameraParameters parameters(1);
  parameters.set(kBrightness, 1);
  parameters.set(kContrast, 2);
  parameters.set(kHorizontalFlip, 1);
  parameters.set(kSaturation, 3);
  parameters.set(kHue, -4);
  parameters.set(kExposure, 510);
  parameters.set(kRedChroma, 0);
  PictureControls expected;
  expected.brightness = 1;
  expected.contrast = 2;
  expected.horizontalFlip = true;
  expected.saturation = 3;
  expected.hue = -4;
  expected.light = 2;
  expected.red = 0.5;
  EXPECT_EQ(parameters.controls(), expected);
  parameters.set(kHorizontalFlip, 0);
  parameters.set(kVerticalFlip, 1);
  expected.horizontalFlip = false;
  expected.verticalFlip = true;
  EXPECT_EQ(parameters.controls(), expected);
}

TEST(CameraParameters, OfModelTwoWarmWithWhiteBalanceAndGainInStepsOfAThirtySecond) {
  CameraParameters parameters(2);
  parameters.set(kGain, 64);
  EXPECT_EQ(parameters.controls().light, 2);
  parameters.set(kWhiteBalance, -36);
  EXPECT_GT(parameters.controls().red, 1.3);
  EXPECT_LT(parameters.controls().blue, 0.8);
}

}  // namespace
}  // namespace robot

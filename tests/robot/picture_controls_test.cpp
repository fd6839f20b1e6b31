// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/picture_controls.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <opencv2/imgproc.hpp>

#include "robot/camera/camera_parameters.h"
#include "robot/camera/generated_scene.h"

namespace robot {
namespace {

// 1 2
// 3 4
cv::Mat fourPixels() {
  cv::Mat picture(2, 2, CV_8UC3);
  for (int i = 0; i < 4; ++i) picture.at<cv::Vec3b>(i / 2, i % 2) = cv::Vec3b::all(50 * (i + 1));
  return picture;
}

std::vector<int> levels(const cv::Mat& picture) {
  std::vector<int> result;
  for (int i = 0; i < 4; ++i) result.push_back(picture.at<cv::Vec3b>(i / 2, i % 2)[1]);
  return result;
}

TEST(PictureControls, ChangeNothingAsTheyAreMade) {
  const cv::Mat picture = fourPixels();
  EXPECT_EQ(PictureControls().apply(picture).data, picture.data);
}

TEST(PictureControls, FlipSidesAndUpsideDown) {
  PictureControls controls;
  controls.horizontalFlip = true;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{100, 50, 200, 150}));
  controls.verticalFlip = true;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{200, 150, 100, 50}));
  controls.horizontalFlip = false;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{150, 200, 50, 100}));
}

TEST(PictureControls, BrightnessIsAddedAndStaysWithinAByte) {
  PictureControls controls;
  controls.brightness = 128 + 60;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{110, 160, 210, 255}));
  controls.brightness = 128 - 60;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{0, 40, 90, 140}));
}

TEST(PictureControls, ContrastStretchesAroundMiddleGrey) {
  PictureControls controls;
  controls.contrast = 0;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{128, 128, 128, 128}));
  controls.contrast = 32;
  EXPECT_EQ(levels(controls.apply(fourPixels())), (std::vector{89, 114, 139, 164}));
}

// Of a picture: what grows with a parameter.
double meanLight(const cv::Mat& picture) {
  const cv::Scalar mean = cv::mean(picture);
  return mean[0] + mean[1] + mean[2];
}
double redness(const cv::Mat& picture) {
  const cv::Scalar mean = cv::mean(picture);
  return mean[2] - mean[1];
}
double blueness(const cv::Mat& picture) {
  const cv::Scalar mean = cv::mean(picture);
  return mean[0] - mean[1];
}
double warmth(const cv::Mat& picture) {
  const cv::Scalar mean = cv::mean(picture);
  return mean[2] - mean[0];
}
double spread(const cv::Mat& picture) {
  cv::Scalar mean, deviation;
  cv::meanStdDev(picture.reshape(1), mean, deviation);
  return deviation[0];
}
double colourfulness(const cv::Mat& picture) {
  cv::Mat hsv;
  cv::cvtColor(picture, hsv, cv::COLOR_BGR2HSV);
  return cv::mean(hsv)[1];
}

struct Effect {
  int model;
  int parameter;
  double (*measure)(const cv::Mat&);
};

class Effects : public testing::TestWithParam<Effect> {};

TEST_P(Effects, GrowVisiblyAndSteadilyWithTheParameter) {
  const auto [model, id, measure] = GetParam();
  cv::Mat scene;
  cv::resize(GeneratedScene(0).render(0), scene, {160, 120}, 0, 0, cv::INTER_AREA);
  CameraParameters parameters(model);
  const ParameterRange range = parameters.range(id);
  constexpr int kSteps = 16;
  double first = 0;
  double before = -1e9;
  for (int step = 0; step <= kSteps; ++step) {
    parameters.set(id, range.minimum + (range.maximum - range.minimum) * step / kSteps);
    const double now = measure(parameters.controls().apply(scene));
    EXPECT_GE(now, before - 0.01) << range.name << " " << parameters.get(id);
    if (step == 0) first = now;
    before = now;
  }
  EXPECT_GT(before, first + 10) << range.name;
}

INSTANTIATE_TEST_SUITE_P(
    OfEachParameter, Effects,
    testing::Values(Effect{1, kBrightness, meanLight}, Effect{1, kContrast, spread},
                    Effect{1, kSaturation, colourfulness}, Effect{1, kRedChroma, redness},
                    Effect{1, kBlueChroma, blueness}, Effect{1, kGain, meanLight},
                    Effect{1, kExposure, meanLight}, Effect{2, kBrightness, meanLight},
                    Effect{2, kContrast, spread}, Effect{2, kSaturation, colourfulness},
                    Effect{2, kGain, meanLight}, Effect{2, kExposure, meanLight},
                    Effect{2, kWhiteBalance, warmth}));

cv::Vec3b pixelAfter(const PictureControls& controls, const cv::Vec3b& bgr) {
  const cv::Mat one(1, 1, CV_8UC3, cv::Scalar(bgr[0], bgr[1], bgr[2]));
  return controls.apply(one).at<cv::Vec3b>(0, 0);
}

TEST(PictureControls, HueTurnsColoursAllTheWayRoundAndLeavesGreysAlone) {
  const auto angleAfter = [](int hue) {
    PictureControls controls;
    controls.hue = hue;
    const cv::Vec3b colour = pixelAfter(controls, {110, 120, 150});
    return std::atan2(0.615 * colour[2] - 0.515 * colour[1] - 0.1 * colour[0],
                      0.436 * colour[0] - 0.289 * colour[1] - 0.147 * colour[2]);
  };
  for (int hue = -180; hue < 180; hue += 20) {
    const double turned = std::remainder(angleAfter(hue + 20) - angleAfter(hue), 2 * M_PI);
    EXPECT_NEAR(turned * 180 / M_PI, 20, 6) << hue;
  }
  PictureControls controls;
  controls.hue = 77;
  for (const int level : {0, 100, 255}) {
    const cv::Vec3b grey = pixelAfter(controls, cv::Vec3b::all(static_cast<uchar>(level)));
    for (int channel = 0; channel < 3; ++channel) EXPECT_NEAR(grey[channel], level, 1);
  }
  controls.hue = 60;
  const cv::Vec3b turned = pixelAfter(controls, {60, 60, 160});
  EXPECT_GT(turned[1], 80) << "red goes towards yellow";
}

TEST(PictureControls, WithoutSaturationAllChannelsAreEqual) {
  PictureControls controls;
  controls.saturation = 0;
  const cv::Vec3b grey = pixelAfter(controls, {200, 20, 90});
  EXPECT_NEAR(grey[0], grey[1], 1);
  EXPECT_NEAR(grey[1], grey[2], 1);
}

TEST(PictureControls, NoExposureIsBlack) {
  PictureControls controls;
  controls.light = 0;
  EXPECT_EQ(pixelAfter(controls, {200, 20, 90}), cv::Vec3b(0, 0, 0));
}

TEST(PictureControls, LeaveTheSourcesPixelsAlone) {
  const cv::Mat picture = fourPixels();
  PictureControls controls;
  controls.brightness = 200;
  controls.verticalFlip = true;
  controls.apply(picture);
  EXPECT_EQ(levels(picture), (std::vector{50, 100, 150, 200}));
}

}  // namespace
}  // namespace robot

#include "robot/camera/picture_controls.h"

#include <gtest/gtest.h>

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

// SPDX-License-Identifier: Apache-2.0
// Switching the camera brings every control in line with it.
#include <gtest/gtest.h>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

// Parameters as if each camera had its own: they change when the camera does.
void changeAll(CameraRobot& viewer, int automatic) {
  for (const int id : {7, 8, 11, 12, 13}) viewer.set(id, automatic);
  viewer.set(20, automatic != 0 ? 0 : 9);
  viewer.set(33, -60);
  for (const int id : {0, 1, 2, 3, 4, 5, 6, 17}) viewer.set(id, 40 + id);
}

Lines boxesChecked(const QWidget& panel) {
  Lines checked;
  for (const QCheckBox* box : panel.findChildren<QCheckBox*>())
    if (box->isChecked()) checked.push_back(box->text().toStdString());
  return checked;
}

}  // namespace

TEST(CameraSwitch, TogglesBetweenTheTwoCameras) {
  CameraRobot viewer(1);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.takeCameraCalls();
  panel.onSwitchCameraSelected();
  EXPECT_EQ(viewer.model().fCamera, 1);
  EXPECT_EQ(viewer.takeCameraCalls().at(0), "setParam(18, 1)");
  panel.onSwitchCameraSelected();
  EXPECT_EQ(viewer.model().fCamera, 0);
  viewer.takeCameraCalls();
  viewer.model().fCamera = 7;
  panel.onSwitchCameraSelected();
  EXPECT_EQ(viewer.takeCameraCalls().at(0), "setParam(18, 7)");
}

TEST(CameraSwitch, ReadsEveryParameterOfTheNewCameraInOrder) {
  const std::pair<int, std::vector<int>> kRead[] = {
      {1, {20, 13, 6, 12, 5, 4, 11, 17, 8, 7, 0, 1, 2, 3}},
      {2, {20, 11, 6, 12, 33, 11, 17, 8, 7, 0, 1, 2, 3}},
      {0, {20, 12, 11, 17, 8, 7, 0, 1, 2, 3}}};
  for (const auto& [model, ids] : kRead) {
    CameraRobot viewer(model);
    viewer.set(20, 9);
    viewer.set(33, -50);
    viewer.set(6, 50);
    VideoSettingsWidget panel(viewer.module, nullptr);
    viewer.takeCameraCalls();
    panel.onCameraSelect(1);
    Lines wanted = {"setParam(18, 1)", "getParam(18)"};
    for (const int id : ids) wanted.push_back("getParam(" + std::to_string(id) + ", 1)");
    EXPECT_EQ(viewer.takeCameraCalls(), wanted) << model;
  }
}

TEST(CameraSwitch, FollowsTheAutomaticModesOfModelOne) {
  CameraRobot viewer(1);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  changeAll(viewer, 1);
  panel.onCameraSelect(1);
  EXPECT_EQ(boxesChecked(panel), (Lines{"black and white", "Auto exposition", "Auto gain",
                                        "Auto white balance", "Vertical Flip", "Horizontal Flip"}));
  for (const char* name : {"Exposure", "Gain (steps of 1/16)", "Blue chroma", "Red chroma"})
    EXPECT_FALSE(findSliderOf(panel, name)->isEnabled()) << name;
  for (const char* name : {"Brightness", "Contrast", "Saturation", "Hue", "Exposure correction"})
    EXPECT_TRUE(findSliderOf(panel, name)->isEnabled()) << name;

  changeAll(viewer, 0);
  panel.onCameraSelect(0);
  EXPECT_EQ(boxesChecked(panel), Lines{});
  const std::pair<const char*, int> kValues[] = {{"Exposure", 57},    {"Gain (steps of 1/16)", 46},
                                                 {"Blue chroma", 45}, {"Red chroma", 44},
                                                 {"Brightness", 40},  {"Contrast", 41},
                                                 {"Saturation", 42},  {"Hue", 43}};
  for (const auto& [name, value] : kValues) {
    EXPECT_TRUE(findSliderOf(panel, name)->isEnabled()) << name;
    EXPECT_EQ(findSliderOf(panel, name)->value(), value) << name;
  }
  EXPECT_FALSE(findSliderOf(panel, "Exposure correction")->isEnabled());
}

TEST(CameraSwitch, FollowsTheAutomaticModesOfModelTwo) {
  CameraRobot viewer(2);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  changeAll(viewer, 1);
  panel.onCameraSelect(1);
  for (const char* name : {"Exposure", "Gain", "White balance", "Hue"})
    EXPECT_FALSE(findSliderOf(panel, name)->isEnabled()) << name;
  changeAll(viewer, 0);
  panel.onCameraSelect(0);
  const std::pair<const char*, int> kValues[] = {
      {"Exposure", 57}, {"Gain", 46}, {"White balance", -60}, {"Brightness", 40}};
  for (const auto& [name, value] : kValues) {
    EXPECT_TRUE(findSliderOf(panel, name)->isEnabled()) << name;
    EXPECT_EQ(findSliderOf(panel, name)->value(), value) << name;
  }
  EXPECT_FALSE(findSliderOf(panel, "Hue")->isEnabled());
  EXPECT_EQ(findSliderOf(panel, "Hue")->value(), 43);
}

TEST(CameraSwitch, EchoesWhatChangedBackToTheRobot) {
  CameraRobot viewer(0);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.set(8, 1);
  viewer.set(1, 99);
  viewer.takeCameraCalls();
  panel.onCameraSelect(1);
  EXPECT_EQ(viewer.takeWrites(),
            (Lines{"setParam(18, 1)", "setParam(8, 1, 1)", "setParam(1, 99, 1)"}));
}

TEST(CameraSwitch, RefusedRefreshesTheControlsAllTheSame) {
  CameraRobot viewer(1);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.makeRefused(18);
  viewer.set(0, 123);
  panel.onSwitchCameraSelected();
  EXPECT_EQ(viewer.model().fCamera, 0);
  EXPECT_EQ(findSliderOf(panel, "Brightness")->value(), 123);
}

TEST(CameraSwitch, LeavesABoxThatCannotBeReadAndDisablesSuchASlider) {
  CameraRobot viewer(1);
  viewer.set(20, 9);
  viewer.set(8, 1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  for (const int id : {8, 20, 0}) viewer.makeUnreadable(id);
  panel.onCameraSelect(1);
  EXPECT_TRUE(findBox(panel, "Vertical Flip")->isChecked());
  EXPECT_FALSE(findBox(panel, "black and white")->isChecked());
  EXPECT_FALSE(findSliderOf(panel, "Brightness")->isEnabled());
}

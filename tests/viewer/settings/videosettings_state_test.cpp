// SPDX-License-Identifier: Apache-2.0
// What a panel hands over to the next one.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QJsonArray>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

int resolutionOf(const VideoSettingsWidget& panel) {
  return panel.findChild<QComboBox*>()->currentIndex();
}

}  // namespace

TEST(VideoSettingsState, SetsTheSameAgainAsClicksWould) {
  QJsonObject state;
  {
    CameraRobot viewer(1);
    VideoSettingsWidget panel(viewer.module, nullptr);
    panel.findChild<QComboBox*>()->setCurrentIndex(2);
    findSliderOf(panel, "Framerate up to")->setValue(15);
    findBox(panel, "black and white")->setChecked(true);
    findBox(panel, "face detection")->setChecked(true);
    state = panel.saveState();
  }
  CameraRobot viewer(1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.robot.takeCalls();
  panel.restoreState(state);
  EXPECT_EQ(viewer.takeWrites(),
            (Lines{"setResolution(\"viewer_1\", 2)", "setFrameRate(\"viewer_1\", 15)",
                   "setColorSpace(\"viewer_1\", 0)"}));
  EXPECT_EQ(resolutionOf(panel), 2);
  EXPECT_EQ(findSliderOf(panel, "Framerate up to")->value(), 15);
  EXPECT_TRUE(findBox(panel, "black and white")->isChecked());
  EXPECT_TRUE(findBox(panel, "face detection")->isChecked());
  EXPECT_FALSE(findBox(panel, "mark detection")->isChecked());
  EXPECT_EQ(panel.saveState(), state);
}

TEST(VideoSettingsState, SwitchesToTheCameraThatWasActive) {
  CameraRobot viewer(1);
  viewer.model().fCamera = 1;
  const QJsonObject state = VideoSettingsWidget(viewer.module, nullptr).saveState();
  viewer.model().fCamera = 0;
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.robot.takeCalls();
  panel.restoreState(state);
  const Lines writes = viewer.takeWrites();
  ASSERT_FALSE(writes.empty());
  EXPECT_EQ(writes.front(), "setParam(18, 1)");
  EXPECT_EQ(viewer.model().fCamera, 1);
}

TEST(VideoSettingsState, OfAPanelThatNobodyTouchedWritesNothing) {
  CameraRobot viewer(1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.robot.takeCalls();
  panel.restoreState(panel.saveState());
  EXPECT_EQ(viewer.robot.takeCalls(), Lines{});
}

TEST(VideoSettingsState, ThatSaysNothingOrNonsenseLeavesThePanelAsItIs) {
  CameraRobot viewer(1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.robot.takeCalls();
  panel.restoreState({});
  panel.restoreState({{"camera", "one"},
                      {"resolution", QJsonArray()},
                      {"frameRate", true},
                      {"blackAndWhite", 7},
                      {"detections", QJsonArray{"unicorn", 3}}});
  EXPECT_EQ(viewer.robot.takeCalls(), Lines{});
  panel.restoreState({{"resolution", 3}});
  EXPECT_EQ(resolutionOf(panel), 2) << "this camera has no larger one";
  panel.restoreState({{"resolution", -7}});
  EXPECT_EQ(resolutionOf(panel), 0);
}

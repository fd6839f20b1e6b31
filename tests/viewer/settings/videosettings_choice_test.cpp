// SPDX-License-Identifier: Apache-2.0
// What is chosen for the user, such as on the command line.
#include <gtest/gtest.h>

#include <QComboBox>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

struct Panel {
  explicit Panel(int cameraModel = 1) : viewer(cameraModel), panel(viewer.module, nullptr) {
    viewer.robot.takeCalls();
  }
  // What is said of it.
  std::string choose(const QString& setting, const QString& value) {
    return panel.choose(setting, value).toStdString();
  }

  CameraRobot viewer;
  VideoSettingsWidget panel;
};

}  // namespace

TEST(VideoSettingsChoice, CausesTheCallsOfTheClicks) {
  Panel clicked;
  clicked.panel.findChild<QComboBox*>()->setCurrentIndex(2);
  findSliderOf(clicked.panel, "Framerate up to")->setValue(30);
  findBox(clicked.panel, "face detection")->setChecked(true);
  Panel chosen;
  EXPECT_EQ(chosen.choose("size", "640x480"), "");
  EXPECT_EQ(chosen.choose("fps", "30"), "");
  EXPECT_EQ(chosen.choose("detect", "face"), "");
  const Lines calls = clicked.viewer.robot.takeCalls();
  EXPECT_FALSE(calls.empty());
  EXPECT_EQ(chosen.viewer.robot.takeCalls(), calls);
  EXPECT_EQ(chosen.panel.findChild<QComboBox*>()->currentIndex(), 2);
  EXPECT_EQ(findSliderOf(chosen.panel, "Framerate up to")->value(), 30);
  EXPECT_TRUE(findBox(chosen.panel, "face detection")->isChecked());
  EXPECT_FALSE(findBox(chosen.panel, "mark detection")->isChecked());
}

TEST(VideoSettingsChoice, KnowsEveryDetection) {
  Panel on;
  for (const auto& [kind, text] :
       std::vector<std::pair<const char*, const char*>>{{"mark", "mark detection"},
                                                        {"ball", "ball detection"},
                                                        {"duck", "duck detection"},
                                                        {"face", "face detection"},
                                                        {"logo", "logo detection"},
                                                        {"picture", "vision recognition"}}) {
    EXPECT_EQ(on.choose("detect", kind), "");
    EXPECT_TRUE(findBox(on.panel, text)->isChecked()) << kind;
  }
}

TEST(VideoSettingsChoice, OfACameraSwitchesOnlyWhereItIsNotActive) {
  Panel on;
  EXPECT_EQ(on.choose("camera", "0"), "");
  EXPECT_EQ(on.viewer.robot.takeCalls(), Lines{});
  EXPECT_EQ(on.choose("camera", "1"), "");
  const Lines writes = on.viewer.takeWrites();
  ASSERT_FALSE(writes.empty());
  EXPECT_EQ(writes.front(), "setParam(18, 1)");
  EXPECT_EQ(on.viewer.model().fCamera, 1);
}

TEST(VideoSettingsChoice, SaysWhatThereIsInsteadAndChangesNothing) {
  Panel on;
  EXPECT_EQ(on.choose("size", "1280x960"),
            "this camera has no size '1280x960'; it has: 160x120, 320x240, 640x480");
  EXPECT_EQ(on.choose("size", "640"),
            "this camera has no size '640'; it has: 160x120, 320x240, 640x480");
  for (const char* rate : {"0", "31", "-1", "many", ""})
    EXPECT_EQ(on.choose("fps", rate), std::string("the frame rate '") + rate +
                                          "' is no whole number from 1 to 30, which is the most "
                                          "at this size");
  EXPECT_EQ(on.choose("detect", "unicorn"),
            "there is no detection 'unicorn'; there are: ball, duck, mark, face, logo, picture");
  EXPECT_EQ(on.choose("camera", "2"), "there is no camera '2'; there are: 0 and 1");
  EXPECT_EQ(on.choose("volume", "11"),
            "there is no setting 'volume'; there are: size, fps, detect and camera");
  EXPECT_EQ(on.viewer.robot.takeCalls(), Lines{});
}

TEST(VideoSettingsChoice, OfARateEndsWhereTheLargestSizeDoes) {
  Panel on(2);
  EXPECT_EQ(on.choose("size", "1280x960"), "");
  EXPECT_EQ(on.choose("fps", "5"), "");
  EXPECT_NE(on.choose("fps", "6").find("from 1 to 5"), std::string::npos);
}

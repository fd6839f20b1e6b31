// SPDX-License-Identifier: Apache-2.0
// What the panel does when the user acts.
#include <gtest/gtest.h>

#include <QComboBox>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

// A panel on a robot that was set up before.
class Used {
 public:
  explicit Used(CameraRobot& viewer) : fViewer(viewer), fPanel(viewer.module, nullptr) {
    fPanel.show();
    viewer.robot.takeCalls();
    viewer.log.clear();
  }

  VideoSettingsWidget& panel() { return fPanel; }
  QCheckBox* box(const char* text) { return findBox(fPanel, text); }
  QSlider* slider(const char* name) { return findSliderOf(fPanel, name); }
  QString shown(const char* name) {
    // The label between the slider's name and the slider.
    const QWidgetList all = fPanel.findChildren<QWidget*>();
    return qobject_cast<QLabel*>(all.at(all.indexOf(slider(name)) - 1))->text();
  }
  Lines clicked(const char* text) {
    fViewer.takeCameraCalls();
    click(box(text));
    return fViewer.takeCameraCalls();
  }
  Lines chosen(int resolution) {
    auto* combo = fPanel.findChild<QComboBox*>();
    fViewer.takeCameraCalls();
    while (combo->currentIndex() != resolution)
      QTest::keyClick(combo, combo->currentIndex() < resolution ? Qt::Key_Down : Qt::Key_Up);
    return fViewer.takeCameraCalls();
  }

 private:
  CameraRobot& fViewer;
  VideoSettingsWidget fPanel;
};

}  // namespace

TEST(VideoSettings, BlackAndWhiteWritesItsColourSpaceAndUncheckingAlwaysColour) {
  CameraRobot viewer(1);
  viewer.model().fColorSpace = 10;
  Used used(viewer);
  EXPECT_EQ(used.clicked("black and white"), Lines{"setColorSpace(\"viewer_1\", 0)"});
  EXPECT_EQ(used.clicked("black and white"), Lines{"setColorSpace(\"viewer_1\", 9)"});
}

TEST(VideoSettings, FlipsAreWrittenAsCheckedOrNot) {
  CameraRobot viewer(1);
  Used used(viewer);
  EXPECT_EQ(used.clicked("Vertical Flip"), Lines{"setParam(8, 1, 0)"});
  EXPECT_EQ(used.clicked("Vertical Flip"), Lines{"setParam(8, 0, 0)"});
  EXPECT_EQ(used.clicked("Horizontal Flip"), Lines{"setParam(7, 1, 0)"});
  used.panel().onHorizontalFlip(Qt::PartiallyChecked);
  EXPECT_EQ(viewer.takeCameraCalls(), Lines{"setParam(7, 0, 0)"});
}

TEST(VideoSettings, ASmallResolutionIsWrittenWithTheFullRangeOfFrameRates) {
  CameraRobot viewer(1);
  Used used(viewer);
  EXPECT_EQ(used.chosen(1), Lines{"setResolution(\"viewer_1\", 1)"});
  EXPECT_EQ(used.chosen(2), Lines{"setResolution(\"viewer_1\", 2)"});
  EXPECT_EQ(used.slider("Framerate up to")->maximum(), 30);
}

TEST(VideoSettings, TheLargestResolutionLimitsTheFrameRateFirst) {
  CameraRobot viewer(2);
  viewer.model().fFps = 12;
  Used used(viewer);
  used.chosen(2);
  // The slider follows its new range and writes that once more.
  EXPECT_EQ(used.chosen(3), (Lines{"setFrameRate(\"viewer_1\", 5)", "setFrameRate(\"viewer_1\", 5)",
                                   "setResolution(\"viewer_1\", 3)"}));
  EXPECT_EQ(viewer.model().fFps, 5);
  EXPECT_EQ(used.slider("Framerate up to")->minimum(), 0);
  EXPECT_EQ(used.slider("Framerate up to")->maximum(), 5);
  EXPECT_EQ(used.slider("Framerate up to")->value(), 5);

  EXPECT_EQ(used.chosen(2), Lines{"setResolution(\"viewer_1\", 2)"});
  EXPECT_EQ(used.slider("Framerate up to")->maximum(), 30);
  EXPECT_EQ(viewer.model().fFps, 5);
}

TEST(VideoSettings, ALowFrameRateStaysWithTheLargestResolution) {
  CameraRobot viewer(2);
  viewer.model().fFps = 4;
  Used used(viewer);
  used.chosen(2);
  EXPECT_EQ(used.chosen(3), Lines{"setResolution(\"viewer_1\", 3)"});
  EXPECT_EQ(viewer.model().fFps, 4);
}

TEST(VideoSettings, AutoExpositionWritesFirstAndThenOffersItsSliders) {
  CameraRobot viewer(1);
  viewer.set(17, 100);
  Used used(viewer);
  EXPECT_EQ(used.clicked("Auto exposition"),
            (Lines{"setParam(11, 1, 0)", "getParam(13, 0)", "getParam(11, 0)"}));
  EXPECT_FALSE(used.slider("Exposure")->isEnabled());
  EXPECT_TRUE(used.slider("Exposure correction")->isEnabled());

  // The automatic mode has changed the exposure meanwhile; the slider's echo writes it back.
  viewer.set(17, 250);
  EXPECT_EQ(used.clicked("Auto exposition"),
            (Lines{"setParam(11, 0, 0)", "getParam(17, 0)", "setParam(17, 250, 0)",
                   "getParam(13, 0)", "getParam(11, 0)"}));
  EXPECT_TRUE(used.slider("Exposure")->isEnabled());
  EXPECT_EQ(used.slider("Exposure")->value(), 250);
  EXPECT_EQ(used.shown("Exposure"), "250");
  EXPECT_FALSE(used.slider("Exposure correction")->isEnabled());
}

TEST(VideoSettings, AutoExpositionOfModelTwoOffersGainToo) {
  CameraRobot viewer(2);
  viewer.set(11, 1);
  viewer.set(6, 64);
  Used used(viewer);
  EXPECT_EQ(used.clicked("Auto exposition"),
            (Lines{"setParam(11, 0, 0)", "getParam(17, 0)", "getParam(6, 0)"}));
  EXPECT_TRUE(used.slider("Gain")->isEnabled());
  EXPECT_EQ(used.clicked("Auto exposition"), Lines{"setParam(11, 1, 0)"});
  EXPECT_FALSE(used.slider("Gain")->isEnabled());
}

TEST(VideoSettings, ASliderThatCannotBeRefreshedStaysDisabled) {
  CameraRobot viewer(1);
  viewer.set(11, 1);
  Used used(viewer);
  viewer.makeUnreadable(17);
  click(used.box("Auto exposition"));
  EXPECT_FALSE(used.slider("Exposure")->isEnabled());
  EXPECT_EQ(viewer.log.lines(), Lines{"error getCameraParam: no parameter 17"});
}

TEST(VideoSettings, AutoGainOffersItsSliderFirstAndThenWrites) {
  CameraRobot viewer(1);
  viewer.set(13, 1);
  viewer.set(6, 30);
  Used used(viewer);
  EXPECT_EQ(used.clicked("Auto gain"),
            (Lines{"getParam(6, 0)", "setParam(13, 0, 0)", "getParam(13, 0)", "getParam(11, 0)"}));
  EXPECT_TRUE(used.slider("Gain (steps of 1/16)")->isEnabled());
  EXPECT_FALSE(used.slider("Exposure correction")->isEnabled());
  EXPECT_EQ(used.clicked("Auto gain"),
            (Lines{"setParam(13, 1, 0)", "getParam(13, 0)", "getParam(11, 0)"}));
  EXPECT_FALSE(used.slider("Gain (steps of 1/16)")->isEnabled());
  EXPECT_TRUE(used.slider("Exposure correction")->isEnabled());
}

TEST(VideoSettings, ExposureCorrectionFollowsWhatTheRobotMadeOfTheWrite) {
  CameraRobot viewer(1);
  Used used(viewer);
  viewer.makeRefused(13);
  click(used.box("Auto gain"));
  EXPECT_FALSE(used.slider("Exposure correction")->isEnabled());
}

TEST(VideoSettings, AutoWhiteBalanceWritesLast) {
  CameraRobot one(1);
  one.set(12, 1);
  Used first(one);
  EXPECT_EQ(first.clicked("Auto white balance"),
            (Lines{"getParam(5, 0)", "getParam(4, 0)", "setParam(12, 0, 0)"}));
  EXPECT_TRUE(first.slider("Blue chroma")->isEnabled());
  EXPECT_TRUE(first.slider("Red chroma")->isEnabled());
  EXPECT_EQ(first.clicked("Auto white balance"), Lines{"setParam(12, 1, 0)"});
  EXPECT_FALSE(first.slider("Blue chroma")->isEnabled());

  CameraRobot two(2);
  two.set(12, 1);
  two.set(33, -50);
  Used second(two);
  EXPECT_EQ(second.clicked("Auto white balance"), (Lines{"getParam(33, 0)", "setParam(12, 0, 0)"}));
  EXPECT_TRUE(second.slider("White balance")->isEnabled());
}

TEST(VideoSettings, DetectionBoxesSwitchTheirExtractorsAndStayAsTheUserLeftThem) {
  CameraRobot viewer(1);
  const std::pair<const char*, const char*> kBoxes[] = {
      {"mark detection", "KyLandMarkDetection"},
      {"face detection", "KyFaceDetection"},
      {"logo detection", "KyLogoDetection"},
      {"vision recognition", "KyVisionRecognition"},
      {"ball detection", "KyColoredToysDetection"}};
  for (const auto& [text, name] : kBoxes) {
    const auto extractor = viewer.robot.add(name);
    for (const char* method : {"subscribe", "unsubscribe", "setParam", "load"})
      extractor->answer(method, Ky::KyValue());
  }
  Used used(viewer);
  for (const auto& [text, name] : kBoxes) {
    viewer.robot.takeCalls();
    click(used.box(text));
    EXPECT_EQ(viewer.robot.takeCalls().at(0).rfind(std::string(name) + ".subscribe", 0), 0u);
    click(used.box(text));
    EXPECT_EQ(viewer.robot.takeCalls().back(), std::string(name) + ".unsubscribe(\"Periscope\")");
  }
  click(used.box("duck detection"));
  EXPECT_EQ(viewer.robot.takeCalls().back(), "KyColoredToysDetection.setParam(\"mode\", [2, 1])");
  viewer.robot.remove("KyFaceDetection");
  click(used.box("face detection"));
  EXPECT_TRUE(used.box("face detection")->isChecked());
  EXPECT_EQ(viewer.log.lines().size(), 1u);
}

TEST(VideoSettings, DoNothingOnceTheModuleIsGone) {
  CameraRobot viewer(1);
  Used used(viewer);
  viewer.dropModule();
  for (QCheckBox* box : used.panel().findChildren<QCheckBox*>()) click(box);
  for (QSlider* slider : used.panel().findChildren<QSlider*>())
    QTest::keyClick(slider, Qt::Key_Right);
  used.chosen(2);
  used.panel().onSwitchCameraSelected();
  used.panel().onCameraSelect(1);
  EXPECT_EQ(viewer.robot.calls(), Lines{});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

// SPDX-License-Identifier: Apache-2.0
// What the panel offers for each model of the camera, and how it starts.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLayout>
#include <QMetaMethod>
#include <QPushButton>
#include <QTabWidget>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

QString textOf(const VideoSettingsWidget& panel) {
  QStringList items;
  const auto* combo = panel.findChild<QComboBox*>();
  for (int i = 0; i < combo->count(); ++i) items << combo->itemText(i);
  return items.join(", ");
}

bool enabled(const VideoSettingsWidget& panel, const char* slider) {
  return findSliderOf(panel, slider)->isEnabled();
}

const Lines kTop = {"Framerate up to",    "resolution",      "black and white", "ball detection",
                    "duck detection",     "mark detection",  "face detection",  "logo detection",
                    "vision recognition", "Auto exposition", "Exposure"};
const Lines kBottom = {"Brightness", "Contrast",      "Saturation",
                       "Hue",        "Vertical Flip", "Horizontal Flip"};

Lines joined(Lines lines, const Lines& middle, const Lines& end) {
  lines.insert(lines.end(), middle.begin(), middle.end());
  lines.insert(lines.end(), end.begin(), end.end());
  return lines;
}

}  // namespace

TEST(VideoSettingsPanel, OffersTheControlsOfTheCamerasModelWithoutCuttingAny) {
  const std::pair<int, Lines> kOffered[] = {
      {0, joined(kTop, {"Auto white balance"}, kBottom)},
      {1, joined(kTop,
                 {"Auto gain", "Gain (steps of 1/16)", "Exposure correction", "Auto white balance",
                  "Blue chroma", "Red chroma"},
                 kBottom)},
      {2, joined(kTop, {"Gain", "Auto white balance", "White balance"}, kBottom)},
  };
  for (const auto& [model, offered] : kOffered) {
    CameraRobot viewer(model);
    viewer.set(33, -120);
    VideoSettingsWidget panel(viewer.module, nullptr);
    panel.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(panel.size(), QSize(400, 600));
    EXPECT_EQ(panel.minimumSize(), panel.maximumSize());
    EXPECT_EQ(controlsOf(panel), offered) << model;
    EXPECT_EQ(controlsCutIn(panel), Lines{}) << model;
    EXPECT_EQ(panel.findChild<QGroupBox*>()->title(), "Other parameters");
  }
}

TEST(VideoSettingsPanel, OffersTheLargestResolutionOnModelTwoOnly) {
  CameraRobot one(1);
  EXPECT_EQ(textOf(VideoSettingsWidget(one.module, nullptr)), "160 * 120, 320 * 240, 640 * 480");
  CameraRobot two(2);
  EXPECT_EQ(textOf(VideoSettingsWidget(two.module, nullptr)),
            "160 * 120, 320 * 240, 640 * 480, 1280 * 960");
}

TEST(VideoSettingsPanel, GivesEachSliderItsRange) {
  struct Range {
    int model;
    const char* name;
    int minimum, maximum;
  };
  const Range kRanges[] = {{1, "Framerate up to", 0, 30},
                           {1, "Exposure", 0, 510},
                           {1, "Gain (steps of 1/16)", 0, 255},
                           {1, "Exposure correction", -6, 6},
                           {1, "Blue chroma", 0, 255},
                           {1, "Red chroma", 0, 255},
                           {1, "Brightness", 0, 255},
                           {1, "Contrast", 0, 127},
                           {1, "Saturation", 0, 255},
                           {1, "Hue", -180, 180},
                           {2, "Gain", 32, 255},
                           {2, "White balance", -120, -36}};
  for (const int model : {1, 2}) {
    CameraRobot viewer(model);
    VideoSettingsWidget panel(viewer.module, nullptr);
    for (const Range& range : kRanges) {
      if (range.model != model) continue;
      const QSlider* slider = findSliderOf(panel, range.name);
      ASSERT_NE(slider, nullptr) << range.name;
      EXPECT_EQ(slider->minimum(), range.minimum) << range.name;
      EXPECT_EQ(slider->maximum(), range.maximum) << range.name;
    }
  }
}

TEST(VideoSettingsPanel, WritesItsParametersUnderTheirNumbers) {
  const std::pair<const char*, int> kNumbers[] = {{"Exposure", 17},   {"Gain (steps of 1/16)", 6},
                                                  {"Blue chroma", 5}, {"Red chroma", 4},
                                                  {"Brightness", 0},  {"Contrast", 1},
                                                  {"Saturation", 2},  {"Hue", 3}};
  CameraRobot viewer(1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  panel.show();
  for (const auto& [name, number] : kNumbers) {
    viewer.takeCameraCalls();
    const int wanted = findSliderOf(panel, name)->value() + 1;
    QTest::keyClick(findSliderOf(panel, name), Qt::Key_Right);
    EXPECT_EQ(viewer.takeWrites(),
              Lines{"setParam(" + std::to_string(number) + ", " + std::to_string(wanted) + ", 0)"});
  }
  QTest::keyClick(findSliderOf(panel, "Framerate up to"), Qt::Key_Right);
  EXPECT_EQ(viewer.takeWrites(), Lines{"setFrameRate(\"viewer_1\", 6)"});
}

TEST(VideoSettingsPanel, IsBuiltWithoutWritingAnything) {
  for (const int model : {0, 1, 2}) {
    CameraRobot viewer(model);
    viewer.model().fResolution = 2;
    for (const int id : {0, 1, 2, 7, 8, 11, 12, 13, 17}) viewer.set(id, 1);
    VideoSettingsWidget panel(viewer.module, nullptr);
    EXPECT_EQ(viewer.takeWrites(), Lines{});
    EXPECT_EQ(panel.findChild<QComboBox*>()->currentIndex(), 0);
  }
}

TEST(VideoSettingsPanel, StartsAsTheRobotIs) {
  CameraRobot viewer(1);
  viewer.set(11, 1);
  viewer.set(13, 5);
  viewer.set(8, 1);
  viewer.set(0, 77);
  viewer.set(20, 0);
  VideoSettingsWidget panel(viewer.module, nullptr);
  EXPECT_TRUE(findBox(panel, "Auto exposition")->isChecked());
  EXPECT_TRUE(findBox(panel, "Auto gain")->isChecked());
  EXPECT_TRUE(findBox(panel, "Vertical Flip")->isChecked());
  EXPECT_FALSE(findBox(panel, "Horizontal Flip")->isChecked());
  EXPECT_FALSE(findBox(panel, "Auto white balance")->isChecked());
  EXPECT_FALSE(findBox(panel, "black and white")->isChecked());
  EXPECT_EQ(findSliderOf(panel, "Brightness")->value(), 77);
  EXPECT_FALSE(enabled(panel, "Exposure"));
  EXPECT_FALSE(enabled(panel, "Gain (steps of 1/16)"));
  EXPECT_TRUE(enabled(panel, "Exposure correction"));
  EXPECT_TRUE(enabled(panel, "Blue chroma"));
  EXPECT_TRUE(enabled(panel, "Red chroma"));
}

TEST(VideoSettingsPanel, OffersExposureCorrectionOnlyWithAnAutomaticMode) {
  for (const auto& [gain, exposition] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
    CameraRobot viewer(1);
    viewer.set(13, gain);
    viewer.set(11, exposition);
    VideoSettingsWidget panel(viewer.module, nullptr);
    EXPECT_EQ(enabled(panel, "Exposure correction"), gain != 0 || exposition != 0);
  }
}

TEST(VideoSettingsPanel, OfModelTwoBindsGainToAutoExpositionAndNeverOffersHue) {
  for (const int automatic : {0, 1}) {
    CameraRobot viewer(2);
    viewer.set(11, automatic);
    viewer.set(12, automatic);
    VideoSettingsWidget panel(viewer.module, nullptr);
    EXPECT_EQ(enabled(panel, "Gain"), automatic == 0);
    EXPECT_EQ(enabled(panel, "Exposure"), automatic == 0);
    EXPECT_EQ(enabled(panel, "White balance"), automatic == 0);
    EXPECT_FALSE(enabled(panel, "Hue"));
  }
}

TEST(VideoSettingsPanel, GreysOutWhatCannotBeRead) {
  CameraRobot viewer(1);
  for (const int id : {8, 11, 17, 0}) viewer.makeUnreadable(id);
  VideoSettingsWidget panel(viewer.module, nullptr);
  EXPECT_FALSE(findBox(panel, "Auto exposition")->isChecked());
  EXPECT_FALSE(findBox(panel, "Vertical Flip")->isChecked());
  EXPECT_FALSE(enabled(panel, "Exposure"));
  EXPECT_FALSE(enabled(panel, "Brightness"));
  EXPECT_TRUE(enabled(panel, "Contrast"));
}

TEST(VideoSettingsPanel, StandsWithoutACamera) {
  ViewerOnRobot viewer(ViewerOnRobot::Camera::Missing);
  VideoSettingsWidget panel(viewer.module, nullptr);
  panel.show();
  EXPECT_EQ(controlsOf(panel), joined(kTop, {"Auto white balance"}, kBottom));
  for (const QSlider* slider : panel.findChildren<QSlider*>()) EXPECT_FALSE(slider->isEnabled());
  click(findBox(panel, "Auto exposition"));
  panel.onSwitchCameraSelected();
  EXPECT_EQ(viewer.robot.calls(), Lines{});
}

TEST(VideoSettingsPanel, KeepsDetectionsTickableThatTheRobotDidNotOffer) {
  CameraRobot viewer(1);
  const auto launcher = viewer.robot.add("KyLauncher");
  launcher->answer("isModulePresent", [](const Ky::KyValue::Array& arguments) {
    return Ky::KyValue(arguments.at(0).asString() == "KyColoredToysDetection");
  });
  viewer.robot.takeCalls();
  VideoSettingsWidget panel(viewer.module, nullptr);
  Lines asked;
  for (const std::string& call : viewer.robot.takeCalls())
    if (call.rfind("KyLauncher", 0) == 0) asked.push_back(call);
  EXPECT_EQ(asked, (Lines{"KyLauncher.isModulePresent(\"KyColoredToysDetection\")",
                          "KyLauncher.isModulePresent(\"KyColoredToysDetection\")",
                          "KyLauncher.isModulePresent(\"KyLandMarkDetection\")",
                          "KyLauncher.isModulePresent(\"KyFaceDetection\")",
                          "KyLauncher.isModulePresent(\"KyLogoDetection\")",
                          "KyLauncher.isModulePresent(\"KyVisionRecognition\")"}));
  for (const char* text : {"ball detection", "duck detection", "mark detection", "face detection",
                           "logo detection", "vision recognition"}) {
    EXPECT_TRUE(findBox(panel, text)->isEnabled()) << text;
    EXPECT_FALSE(findBox(panel, text)->isChecked()) << text;
  }
  EXPECT_TRUE(findBox(panel, "duck detection")->toolTip().isEmpty());
  EXPECT_FALSE(findBox(panel, "face detection")->toolTip().isEmpty());
}

TEST(VideoSettingsPanel, ListsItsSlotsInTheirOrder) {
  const QMetaObject& meta = VideoSettingsWidget::staticMetaObject;
  Lines slotNames;
  for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
    slotNames.push_back(meta.method(i).methodSignature().toStdString());
  EXPECT_EQ(slotNames,
            (Lines{"onSwitchCameraSelected()", "onCameraSelect(int)", "onAutoGain(int)",
                   "onAutoWhiteBalance(int)", "onAutoExposition(int)", "onVerticalFlip(int)",
                   "onHorizontalFlip(int)", "onColorSpace(int)", "onBallDetection(int)",
                   "onDuckDetection(int)", "onMarkDetection(int)", "onFaceDetection(int)",
                   "onLogoDetection(int)", "onPictureRecognition(int)", "xOnChangeSize(int)"}));
}

TEST(VideoSettingsPanel, FindsItsSlidersByName) {
  CameraRobot viewer(2);
  QTabWidget tabs;
  auto* panel = new VideoSettingsWidget(viewer.module, &tabs);
  ASSERT_NE(panel->xGetCustomSlider("Gain"), nullptr);
  EXPECT_EQ(panel->xGetCustomSlider("Gain")->getName(), "Gain");
  EXPECT_EQ(panel->xGetCustomSlider("gain"), nullptr);
  EXPECT_EQ(panel->xGetCustomSlider("Blue chroma"), nullptr);
}

TEST(VideoSettingsPanel, KeepsAGroupForInitializationParameters) {
  CameraRobot viewer(1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  const std::unique_ptr<QWidget> group(panel.initParametersWidget());
  EXPECT_EQ(qobject_cast<QGroupBox*>(group.get())->title(), "Initialization parameters");
  QStringList labels;
  for (const QLabel* label : group->findChildren<QLabel*>()) labels << label->text();
  EXPECT_EQ(labels, (QStringList{"Resolution :", "Color space :"}));
  ASSERT_EQ(group->findChildren<QComboBox*>().size(), 2);
  for (const QComboBox* combo : group->findChildren<QComboBox*>()) EXPECT_EQ(combo->count(), 0);
  EXPECT_EQ(group->findChild<QPushButton*>()->text(), "Refresh");
}

// SPDX-License-Identifier: Apache-2.0
// A robot that answers nonsense: the panels show what they can and stay usable.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <limits>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/uraballsettings_widget.h"
#include "viewer/settings/videosettings_widget.h"

using Ky::KyValue;

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

const KyValue kNonsense[] = {
    KyValue(),          KyValue(1.5F),       KyValue("12"),
    KyValue::array({}), KyValue::array({1}), KyValue(Ky::KyBinary(std::vector<std::uint8_t>(3)))};

void useEverything(QWidget& panel) {
  for (QCheckBox* box : panel.findChildren<QCheckBox*>()) {
    click(box);
    click(box);
  }
  for (QSlider* slider : panel.findChildren<QSlider*>())
    if (slider->isEnabled()) dragWithMouse(slider, slider->maximum());
}

// Only the frame rate, which the viewer knows itself.
void expectGrey(const QWidget& panel) {
  for (const QSlider* slider : panel.findChildren<QSlider*>())
    EXPECT_EQ(slider->isEnabled(), slider->accessibleName() == "Framerate up to")
        << slider->accessibleName().toStdString();
}

class Nonsense : public testing::TestWithParam<std::tuple<int, KyValue>> {
 protected:
  int model() const { return std::get<0>(GetParam()); }
  KyValue answer() const { return std::get<1>(GetParam()); }
};

}  // namespace

TEST_P(Nonsense, WhenThePanelIsBuiltLeavesItGrey) {
  CameraRobot viewer(model());
  viewer.device->answer("getParam", answer());
  VideoSettingsWidget panel(viewer.module, nullptr);
  panel.show();
  expectGrey(panel);
  for (const QCheckBox* box : panel.findChildren<QCheckBox*>()) EXPECT_FALSE(box->isChecked());
  useEverything(panel);
  panel.onSwitchCameraSelected();
  expectGrey(panel);
}

TEST_P(Nonsense, LaterGreysWhatIsReadAgain) {
  CameraRobot viewer(model());
  viewer.set(33, -50);
  viewer.set(6, 50);
  viewer.set(8, 1);
  VideoSettingsWidget panel(viewer.module, nullptr);
  panel.show();
  viewer.device->answer("getParam", answer());
  panel.onCameraSelect(1);
  EXPECT_EQ(viewer.model().fCamera, 0) << "not confirmed";
  EXPECT_FALSE(findSliderOf(panel, "Brightness")->isEnabled());
  EXPECT_TRUE(findBox(panel, "Vertical Flip")->isChecked());
  useEverything(panel);
}

INSTANTIATE_TEST_SUITE_P(Answers, Nonsense,
                         testing::Combine(testing::Values(1, 2), testing::ValuesIn(kNonsense)));

TEST(Nonsense, AsTheCamerasModelIsAModelThatNobodyKnows) {
  for (const KyValue& answer : kNonsense) {
    CameraRobot viewer(1);
    viewer.device->answer("getCameraModelID", answer);
    VideoSettingsWidget panel(viewer.module, nullptr);
    EXPECT_EQ(findBox(panel, "Auto gain"), nullptr);
    EXPECT_EQ(findSliderOf(panel, "Gain"), nullptr);
  }
  for (const int model : {-1, 3, kMost}) {
    CameraRobot viewer(model);
    VideoSettingsWidget panel(viewer.module, nullptr);
    panel.show();
    EXPECT_EQ(findSliderOf(panel, "White balance"), nullptr);
    EXPECT_EQ(controlsCutIn(panel), Lines{});
  }
}

TEST(Nonsense, OutOfRangeStartsAtTheMinimumAndIsLaterShownAsTheRobotTellsIt) {
  for (const int value : {kLeast, -7000, 7000, kMost}) {
    CameraRobot viewer(1);
    viewer.set(17, value);
    VideoSettingsWidget panel(viewer.module, nullptr);
    panel.show();
    EXPECT_EQ(stateOf(panel).at("Exposure"), (ControlState{true, 0, "0"}));
    click(findBox(panel, "Auto exposition"));
    viewer.takeWrites();
    click(findBox(panel, "Auto exposition"));
    const int nearest = value < 0 ? 0 : 510;
    const ControlState shown = stateOf(panel).at("Exposure");
    EXPECT_EQ(shown.value, nearest);
    // Where the slider moves, its new position is what the label tells last.
    EXPECT_EQ(shown.label, std::to_string(nearest == 0 ? value : nearest));
  }
}

TEST(Nonsense, FromTheBallDetectorIsSaidAndChangesNoSlider) {
  const KyValue kAnswers[] = {KyValue(),
                              KyValue(5),
                              KyValue("CY"),
                              KyValue::array({}),
                              KyValue::array({1, 2, 3}),
                              KyValue::array({"a", "b", "c"}),
                              KyValue::array({KyValue::array({1}), 2}),
                              KyValue::array({1.5F})};
  const char* const kNames[] = {
      "CY", "CU", "CV", "minRadius", "radiusRange", "sensitivity", "colorTolerance", "maxShift"};
  for (const KyValue& value : kAnswers) {
    CameraRobot viewer(1);
    const auto detector = viewer.robot.add("KyBallDetection");
    detector->answer("getParam", value);
    detector->answer("setParam", KyValue());
    viewer.set(0, 20);
    testing::internal::CaptureStdout();
    UraballSettingsWidget panel(viewer.module, nullptr);
    const std::string output = testing::internal::GetCapturedStdout();
    std::string expected;
    for (const std::string name : kNames) {
      const bool isPair = name == "radiusRange";
      const bool fits = value.isArray() && value.size() == (isPair ? 2u : 1u);
      expected += fits ? "error while getting " + name + " parameter\n"
                       : name + " parameter size mismatch\n";
    }
    EXPECT_EQ(output, expected) << value.toString();
    EXPECT_EQ(findSliderOf(panel, "Ball Y component")->value(), 20);
    EXPECT_EQ(findSliderOf(panel, "Center detection sensitivity")->value(), 1);
    panel.show();
    useEverything(panel);
  }
}

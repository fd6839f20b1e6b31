// SPDX-License-Identifier: Apache-2.0
// The ball detector's panel on a running robot: it shows what the detector has, and the detector
// has what it was told.
#include <gtest/gtest.h>

#include "ky/proxy.h"
#include "settings_tab.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/uraballsettings_widget.h"

namespace {

using Ky::KyValue;

class BallPanel : public testing::Test {
 protected:
  BallPanel() : tab(1) {
    testing::internal::CaptureStdout();
    panel = std::make_unique<UraballSettingsWidget>(tab.module, nullptr);
    said = testing::internal::GetCapturedStdout();
    panel->show();
  }

  KyValue kept(const std::string& parameter) {
    return tab.broker->call("KyBallDetection", "getParam", {parameter});
  }

  SettingsTab tab;
  std::unique_ptr<UraballSettingsWidget> panel;
  std::string said;
};

const std::pair<const char*, const char*> kSliders[] = {
    {"Ball Y component", "CY"},
    {"Ball U component", "CU"},
    {"Ball V component", "CV"},
    {"Minimum radius", "minRadius"},
    {"Center detection sensitivity", "sensitivity"},
    {"Color tolerance", "colorTolerance"},
    {"Max speed (pix/s)", "maxShift"}};

}  // namespace

TEST_F(BallPanel, ShowsWhatTheDetectorHas) {
  EXPECT_EQ(said, "");
  for (const auto& [name, parameter] : kSliders)
    EXPECT_EQ(KyValue::array({findSliderOf(*panel, name)->value()}), kept(parameter)) << name;
  const KyValue radii = kept("radiusRange");
  EXPECT_EQ(findSliderOf(*panel, "Radius range")->value(), radii[1].asInt() - radii[0].asInt());
}

TEST_F(BallPanel, TellsTheDetectorWhatTheUserDragsTo) {
  const LogCapture log;
  click(findBox(*panel, "Tracking"));
  for (const auto& [name, parameter] : kSliders) {
    QSlider* slider = findSliderOf(*panel, name);
    dragWithMouse(slider, slider->value() > slider->minimum() ? slider->minimum() : 100);
    EXPECT_EQ(kept(parameter), KyValue::array({slider->value()})) << name;
  }
  QSlider* range = findSliderOf(*panel, "Radius range");
  dragWithMouse(range, 100);
  const int smallest = findSliderOf(*panel, "Minimum radius")->value();
  EXPECT_EQ(kept("radiusRange"), KyValue::array({smallest, smallest + range->value()}));
  EXPECT_EQ(log.lines(), std::vector<std::string>{});
}

TEST_F(BallPanel, TellsTheDetectorWhatTheUserTicks) {
  const std::pair<const char*, const char*> kBoxes[] = {
      {"Tracking", "useTracking"},
      {"Multiple balls tracking", "multiBall"},
      {"Enable optimisation (higher noise)", "Optimax"}};
  for (const auto& [name, parameter] : kBoxes)
    for (const bool on : {true, false}) {
      click(findBox(*panel, name));
      EXPECT_EQ(kept(parameter), KyValue::array({on})) << name;
    }
}

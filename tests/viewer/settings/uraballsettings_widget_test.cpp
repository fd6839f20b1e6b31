// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/uraballsettings_widget.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGroupBox>
#include <QMetaMethod>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"

using Ky::KyValue;

namespace {

// A ball detector that keeps its parameters.
class BallRobot : public CameraRobot {
 public:
  BallRobot() : detector(robot.add("KyBallDetection")) {
    for (const char* name :
         {"CY", "CU", "CV", "minRadius", "sensitivity", "colorTolerance", "maxShift"})
      values[name] = KyValue::array({3});
    values["minRadius"] = KyValue::array({12});
    values["radiusRange"] = KyValue::array({10, 60});
    detector->answer("getParam", [this](const KyValue::Array& arguments) {
      const auto found = values.find(arguments.at(0).asString());
      if (found == values.end()) throw Ky::KyError("no such parameter");
      return found->second;
    });
    detector->answer("setParam", KyValue());
  }

  Lines takeBallCalls() {
    Lines calls;
    for (const std::string& call : robot.takeCalls())
      if (call.rfind("KyBallDetection.", 0) == 0) calls.push_back(call.substr(16));
    return calls;
  }

  std::map<std::string, KyValue> values;
  boost::shared_ptr<ScriptedModule> detector;
};

class BallPanel : public testing::Test {
 protected:
  // Builds the panel and returns what it wrote on standard output.
  std::string build() {
    testing::internal::CaptureStdout();
    panel = std::make_unique<UraballSettingsWidget>(viewer.module, nullptr);
    panel->show();
    QCoreApplication::processEvents();
    return testing::internal::GetCapturedStdout();
  }

  QSlider* slider(const char* name) { return findSliderOf(*panel, name); }

  BallRobot viewer;
  std::unique_ptr<UraballSettingsWidget> panel;
};

struct SliderCase {
  const char* parameter;
  const char* name;
  int minimum;
  int maximum;
};

const SliderCase kSliders[] = {{"CY", "Ball Y component", 0, 255},
                               {"CU", "Ball U component", 0, 255},
                               {"CV", "Ball V component", 0, 255},
                               {"minRadius", "Minimum radius", 8, 359},
                               {"radiusRange", "Radius range", 0, 360},
                               {"sensitivity", "Center detection sensitivity", 1, 4},
                               {"colorTolerance", "Color tolerance", 0, 255},
                               {"maxShift", "Max speed (pix/s)", 0, 1000}};

}  // namespace

TEST_F(BallPanel, OffersItsControlsInOrderWithoutCuttingAny) {
  viewer.values["maxShift"] = KyValue::array({1000});
  EXPECT_EQ(build(), "");
  EXPECT_EQ(panel->size(), QSize(400, 600));
  EXPECT_EQ(controlsOf(*panel),
            (Lines{"Ball Y component", "Ball U component", "Ball V component", "Minimum radius",
                   "Radius range", "Center detection sensitivity", "Color tolerance", "Tracking",
                   "Max speed (pix/s)", "Multiple balls tracking",
                   "Enable optimisation (higher noise)"}));
  EXPECT_EQ(controlsCutIn(*panel), Lines{});
  EXPECT_EQ(panel->findChild<QGroupBox*>()->title(), "Other parameters");
  for (const SliderCase& wanted : kSliders) {
    EXPECT_EQ(slider(wanted.name)->minimum(), wanted.minimum) << wanted.name;
    EXPECT_EQ(slider(wanted.name)->maximum(), wanted.maximum) << wanted.name;
  }
}

TEST_F(BallPanel, ShowsWhatTheDetectorSays) {
  viewer.values["CY"] = KyValue::array({77});
  EXPECT_EQ(build(), "");
  EXPECT_EQ(slider("Ball Y component")->value(), 77);
  EXPECT_EQ(slider("Radius range")->value(), 50);
  EXPECT_EQ(slider("Minimum radius")->value(), 12);
  EXPECT_EQ(
      viewer.takeBallCalls(),
      (Lines{"getParam(\"CY\")", "getParam(\"CU\")", "getParam(\"CV\")", "getParam(\"minRadius\")",
             "getParam(\"radiusRange\")", "getParam(\"sensitivity\")",
             "getParam(\"colorTolerance\")", "getParam(\"maxShift\")"}));
  for (const QCheckBox* box : panel->findChildren<QCheckBox*>()) EXPECT_FALSE(box->isChecked());
}

TEST_F(BallPanel, NeverWritesTheCamera) {
  build();
  for (QSlider* each : panel->findChildren<QSlider*>()) dragTo(each, each->maximum());
  EXPECT_EQ(viewer.takeWrites(), Lines{});
}

TEST_F(BallPanel, SaysWhichParameterIsOfAnotherSize) {
  std::string expected;
  for (const SliderCase& each : kSliders) {
    viewer.values[each.parameter] = KyValue::array({1, 2, 3});
    expected += std::string(each.parameter) + " parameter size mismatch\n";
  }
  EXPECT_EQ(build(), expected);
}

TEST_F(BallPanel, SaysWhichParameterCannotBeRead) {
  std::string expected;
  for (const SliderCase& each : kSliders)
    expected += std::string("error while getting ") + each.parameter + " parameter\n";
  viewer.values.clear();
  EXPECT_EQ(build(), expected);
  EXPECT_EQ(viewer.log.lines().size(), 8u);
}

TEST_F(BallPanel, KeepsTheFirstValueOfASliderThatIsToldNonsense) {
  viewer.set(0, 99);
  viewer.values["CY"] = KyValue::array({1, 2});
  viewer.values["CU"] = 7;
  viewer.values["CV"] = KyValue::array({"text"});
  viewer.values["radiusRange"] = KyValue::array({1});
  EXPECT_EQ(build(),
            "CY parameter size mismatch\nCU parameter size mismatch\n"
            "error while getting CV parameter\nradiusRange parameter size mismatch\n");
  for (const char* name : {"Ball Y component", "Ball U component", "Ball V component"})
    EXPECT_EQ(slider(name)->value(), 99) << name;
}

TEST_F(BallPanel, SurvivesRangesBeyondAllInts) {
  viewer.values["radiusRange"] = KyValue::array({std::numeric_limits<int>::min(), 5});
  EXPECT_EQ(build(), "");
  EXPECT_EQ(slider("Radius range")->value(), 360);
  viewer.values["radiusRange"] = KyValue::array({5, std::numeric_limits<int>::min()});
  EXPECT_EQ(build(), "");
  EXPECT_EQ(slider("Radius range")->value(), 0);
}

TEST_F(BallPanel, WritesWhenTheUserLetsGo) {
  build();
  for (const SliderCase& each : kSliders) {
    if (std::string(each.parameter) == "radiusRange") continue;
    viewer.takeBallCalls();
    QSlider* moved = slider(each.name);
    moved->setSliderDown(true);
    moved->setSliderPosition(each.maximum - 1);
    EXPECT_EQ(viewer.takeBallCalls(), Lines{}) << each.name;
    moved->setSliderDown(false);
    EXPECT_EQ(viewer.takeBallCalls(), Lines{std::string("setParam(\"") + each.parameter + "\", [" +
                                            std::to_string(each.maximum - 1) + "])"});
  }
}

TEST_F(BallPanel, WritesTheRadiusRangeFromTheSmallestRadius) {
  build();
  viewer.takeBallCalls();
  dragTo(slider("Radius range"), 30);
  EXPECT_EQ(viewer.takeBallCalls(), Lines{"setParam(\"radiusRange\", [12, 42])"});
  dragTo(slider("Minimum radius"), 20);
  EXPECT_EQ(viewer.takeBallCalls(), Lines{"setParam(\"minRadius\", [20])"});
  dragTo(slider("Radius range"), 31);
  EXPECT_EQ(viewer.takeBallCalls(), Lines{"setParam(\"radiusRange\", [20, 51])"});
}

TEST_F(BallPanel, OffersTheSpeedWhileTracking) {
  build();
  viewer.takeBallCalls();
  EXPECT_FALSE(slider("Max speed (pix/s)")->isEnabled());
  click(findBox(*panel, "Tracking"));
  EXPECT_TRUE(slider("Max speed (pix/s)")->isEnabled());
  click(findBox(*panel, "Tracking"));
  EXPECT_FALSE(slider("Max speed (pix/s)")->isEnabled());
  // Half checked is not tracking, but offers the speed.
  panel->onChangedTracking(Qt::PartiallyChecked);
  EXPECT_TRUE(slider("Max speed (pix/s)")->isEnabled());
  EXPECT_EQ(viewer.takeBallCalls(),
            (Lines{"setParam(\"useTracking\", [true])", "setParam(\"useTracking\", [false])",
                   "setParam(\"useTracking\", [false])"}));
}

TEST_F(BallPanel, WritesItsOtherBoxes) {
  build();
  viewer.takeBallCalls();
  click(findBox(*panel, "Multiple balls tracking"));
  click(findBox(*panel, "Enable optimisation (higher noise)"));
  click(findBox(*panel, "Multiple balls tracking"));
  EXPECT_EQ(viewer.takeBallCalls(),
            (Lines{"setParam(\"multiBall\", [true])", "setParam(\"Optimax\", [true])",
                   "setParam(\"multiBall\", [false])"}));
}

TEST_F(BallPanel, DoesNothingOnceTheModuleIsGone) {
  build();
  viewer.dropModule();
  for (QSlider* each : panel->findChildren<QSlider*>()) dragTo(each, each->maximum());
  for (QCheckBox* box : panel->findChildren<QCheckBox*>()) click(box);
  EXPECT_EQ(viewer.robot.calls(), Lines{});
  EXPECT_FALSE(slider("Max speed (pix/s)")->isEnabled());
}

TEST_F(BallPanel, StandsWithoutAModule) {
  UraballSettingsWidget alone(nullptr, nullptr);
  alone.show();
  EXPECT_EQ(controlsOf(alone),
            (Lines{"Tracking", "Multiple balls tracking", "Enable optimisation (higher noise)"}));
  for (QCheckBox* box : alone.findChildren<QCheckBox*>()) click(box);
  alone.onChangedRadiusRangeComponent();
}

TEST_F(BallPanel, ListsItsSlotsInTheirOrder) {
  const QMetaObject& meta = UraballSettingsWidget::staticMetaObject;
  Lines names;
  for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
    names.push_back(meta.method(i).methodSignature().toStdString());
  EXPECT_EQ(names, (Lines{"onChangedYComponent()", "onChangedUComponent()", "onChangedVComponent()",
                          "onChangedMinRadiusComponent()", "onChangedRadiusRangeComponent()",
                          "onChangedSensibComponent()", "onChangedSeuilComponent()",
                          "onChangedTracking(int)", "onChangedDepMaxComponent()",
                          "onChangedMultipleBallsTracking(int)", "onChangedOptimisation(int)"}));
}

TEST_F(BallPanel, KeepsAnEmptyGroupForInitializationParameters) {
  build();
  const std::unique_ptr<QWidget> group(panel->initParametersWidget());
  EXPECT_EQ(qobject_cast<QGroupBox*>(group.get())->title(), "Initialization parameters");
  EXPECT_TRUE(group->children().isEmpty());
}

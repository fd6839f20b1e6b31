// SPDX-License-Identifier: Apache-2.0
// Goes through every control of the panel as a user does, for each camera model, each combination
// of the automatic modes, and robots that refuse: what reaches the robot, in order, and what
// becomes of every other control.
#include <gtest/gtest.h>

#include <QComboBox>
#include <functional>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

enum class Robot {
  Obeys,
  CannotBeRead,  // since before the panel was built
  BecomesUnreadable,
  RefusesWrites,  // with an error
  IgnoresWrites   // and says nothing
};

struct Modes {
  bool exposition, gain, whiteBalance;
};

struct Situation {
  int model;
  Robot robot;
  Modes modes;
};

// What the robot's parameters are: no two alike, so that one can't stand for another.
const std::map<int, int> kValues = {{0, 100}, {1, 101}, {2, 102}, {3, 30},   {4, 104}, {5, 105},
                                    {6, 106}, {7, 0},   {8, 0},   {17, 117}, {21, 2},  {33, -70}};

std::string read(int id) {
  return "getParam(" + std::to_string(id) + ", 0)";
}
std::string written(int id, int value) {
  return "setParam(" + std::to_string(id) + ", " + std::to_string(value) + ", 0)";
}

struct SliderOfParameter {
  const char* name;
  int id;
  std::vector<int> models;
};
const SliderOfParameter kSliders[] = {{"Exposure", 17, {0, 1, 2}},
                                      {"Gain (steps of 1/16)", 6, {1}},
                                      {"Gain", 6, {2}},
                                      {"Exposure correction", 21, {1}},
                                      {"Blue chroma", 5, {1}},
                                      {"Red chroma", 4, {1}},
                                      {"White balance", 33, {2}},
                                      {"Brightness", 0, {0, 1, 2}},
                                      {"Contrast", 1, {0, 1, 2}},
                                      {"Saturation", 2, {0, 1, 2}},
                                      {"Hue", 3, {0, 1, 2}}};

// One panel on one robot, and what is expected of it.
class Session {
 public:
  explicit Session(const Situation& situation) : model(situation.model), robot(situation.robot) {
    viewer = std::make_unique<CameraRobot>(model);
    for (const auto& [id, value] : kValues) viewer->set(id, value);
    viewer->set(11, situation.modes.exposition);
    viewer->set(13, situation.modes.gain);
    viewer->set(12, situation.modes.whiteBalance);
    if (robot == Robot::CannotBeRead) viewer->breakReads();
    panel = std::make_unique<VideoSettingsWidget>(viewer->module, nullptr);
    panel->show();
    if (robot == Robot::BecomesUnreadable) viewer->breakReads();
    if (robot == Robot::RefusesWrites) viewer->breakWrites();
    if (robot == Robot::IgnoresWrites)
      for (int id = 0; id < 34; ++id) viewer->makeRefused(id);
    viewer->robot.takeCalls();
    expected = stateOf(*panel);
  }

  bool has(const std::string& control) const { return expected.count(control) != 0; }
  bool isReadable() const {
    return robot != Robot::CannotBeRead && robot != Robot::BecomesUnreadable;
  }
  // Whether a mode is on in the robot, as far as the panel can know.
  bool isOn(int id) { return isReadable() && viewer->get(id) != 0; }

  void expectReach(int id, int value) { calls.push_back(written(id, value)); }
  // A slider is offered or not; to be offered it is read anew.
  void expectOffered(const std::string& slider, int id, bool offered) {
    if (!has(slider)) return;
    if (offered) calls.push_back(read(id));
    expected[slider].enabled = offered && isReadable();
  }
  void expectCorrectionFollows() {
    if (!has("Exposure correction")) return;
    calls.push_back(read(13));
    calls.push_back(read(11));
    expected["Exposure correction"].enabled = isOn(13) || isOn(11);
  }

  void compare(const std::string& control) {
    EXPECT_EQ(viewer->takeCameraCalls(), calls) << control;
    const PanelState now = stateOf(*panel);
    ASSERT_EQ(now.size(), expected.size());
    for (const auto& [name, state] : expected) {
      EXPECT_EQ(now.at(name).enabled, state.enabled) << name << " after " << control;
      EXPECT_EQ(now.at(name).value, state.value) << name << " after " << control;
      EXPECT_EQ(now.at(name).label, state.label) << name << " after " << control;
    }
    calls.clear();
  }

  const int model;
  const Robot robot;
  std::unique_ptr<CameraRobot> viewer;
  std::unique_ptr<VideoSettingsWidget> panel;
  Lines calls;
  PanelState expected;
};

// A key on a slider.
void moveSlider(Session& session, const std::string& name, const std::function<void(int)>& reach) {
  ControlState& state = session.expected.at(name);
  QSlider* slider = findSliderOf(*session.panel, QString::fromStdString(name));
  if (state.enabled) {
    ++state.value;
    state.label = std::to_string(state.value);
    reach(state.value);
  }
  QTest::keyClick(slider, Qt::Key_Right);
  session.compare(name);
}

// A click on a box, twice: there and back.
void clickBox(Session& session, const std::string& name, const std::function<void(bool)>& reach) {
  for (int round = 0; round < 2; ++round) {
    ControlState& state = session.expected.at(name);
    state.value = 1 - state.value;
    click(findBox(*session.panel, QString::fromStdString(name)));
    reach(state.value != 0);
    session.compare(name);
  }
}

void goThroughSliders(const Situation& situation) {
  Session session(situation);
  for (const auto& [name, id, models] : kSliders) {
    const bool present = std::count(models.begin(), models.end(), situation.model) != 0;
    ASSERT_EQ(session.has(name), present) << name;
    if (present)
      moveSlider(session, name,
                 [&, parameter = id](int to) { session.expectReach(parameter, to); });
  }
  EXPECT_TRUE(session.expected.at("Framerate up to").enabled) << "the viewer knows it itself";
  moveSlider(session, "Framerate up to", [&](int to) {
    session.calls.push_back("setFrameRate(\"viewer_1\", " + std::to_string(to) + ")");
  });
}

void goThroughModes(const Situation& situation) {
  Session one(situation);
  clickBox(one, "Auto exposition", [&](bool on) {
    one.expectReach(11, on);
    one.expectOffered("Exposure", 17, !on);
    one.expectOffered("Gain", 6, !on);
    one.expectCorrectionFollows();
  });
  Session two(situation);
  if (two.has("Auto gain"))
    clickBox(two, "Auto gain", [&](bool on) {
      two.expectOffered("Gain (steps of 1/16)", 6, !on);
      two.expectReach(13, on);
      two.expectCorrectionFollows();
    });
  Session three(situation);
  clickBox(three, "Auto white balance", [&](bool on) {
    three.expectOffered("Blue chroma", 5, !on);
    three.expectOffered("Red chroma", 4, !on);
    three.expectOffered("White balance", 33, !on);
    three.expectReach(12, on);
  });
}

void goThroughBoxes(const Situation& situation) {
  Session session(situation);
  const std::pair<const char*, int> kFlips[] = {{"Vertical Flip", 8}, {"Horizontal Flip", 7}};
  for (const auto& [name, id] : kFlips)
    clickBox(session, name, [&, parameter = id](bool on) { session.expectReach(parameter, on); });
  clickBox(session, "black and white", [&](bool on) {
    session.calls.push_back(std::string("setColorSpace(\"viewer_1\", ") + (on ? "0)" : "9)"));
  });
  for (const char* name : {"ball detection", "duck detection", "mark detection", "face detection",
                           "logo detection", "vision recognition"})
    clickBox(session, name, [](bool) {});  // no concern of the camera's
}

void goThroughResolutions(const Situation& situation) {
  Session session(situation);
  auto* combo = session.panel->findChild<QComboBox*>();
  for (int index = 1; index < combo->count(); ++index) {
    session.expected["resolution"].value = index;
    if (index == 3) session.viewer->model().fFps = 5;  // the limit is another test's
    session.calls.push_back("setResolution(\"viewer_1\", " + std::to_string(index) + ")");
    QTest::keyClick(combo, Qt::Key_Down);
    session.compare("resolution");
  }
}

class EveryControl : public testing::TestWithParam<std::tuple<int, Robot>> {
 protected:
  void inEachCombination(void (*goThrough)(const Situation&)) {
#ifdef PERISCOPE_SANITIZED
    const std::vector<int> combinations = {0, 5};
#else
    const std::vector<int> combinations = {0, 1, 2, 3, 4, 5, 6, 7};
#endif
    for (const int bits : combinations) {
      SCOPED_TRACE("modes " + std::to_string(bits));
      const auto [model, robot] = GetParam();
      goThrough({model, robot, {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0}});
    }
  }
};

TEST_P(EveryControl, OfASliderReachesItsParameterAndMovesNothingElse) {
  inEachCombination(goThroughSliders);
}

TEST_P(EveryControl, OfAnAutomaticModeOffersAndWithdrawsItsSliders) {
  inEachCombination(goThroughModes);
}

TEST_P(EveryControl, OfABoxReachesItsParameterAndMovesNothingElse) {
  inEachCombination(goThroughBoxes);
}

TEST_P(EveryControl, OfTheResolutionReachesTheSubscription) {
  inEachCombination(goThroughResolutions);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachModel, EveryControl,
    testing::Combine(testing::Values(0, 1, 2),
                     testing::Values(Robot::Obeys, Robot::CannotBeRead, Robot::BecomesUnreadable,
                                     Robot::RefusesWrites, Robot::IgnoresWrites)));

TEST(EveryControl, DraggedWithTheMouseIsWrittenAtEachStepOfTheWay) {
  for (const int model : {1, 2}) {
    Session session({model, Robot::Obeys, {false, false, false}});
    for (const auto& [name, id, models] : kSliders) {
      QSlider* slider = findSliderOf(*session.panel, name);
      if (slider == nullptr || !slider->isEnabled()) continue;
      dragWithMouse(slider, slider->maximum());
      EXPECT_EQ(slider->value(), slider->maximum()) << name;
      const Lines calls = session.viewer->takeCameraCalls();
      EXPECT_GE(calls.size(), 2u) << name;
      EXPECT_EQ(calls.back(), written(id, slider->maximum())) << name;
      for (const std::string& call : calls)
        EXPECT_EQ(call.rfind("setParam(" + std::to_string(id) + ", ", 0), 0u) << call;
    }
  }
}

TEST(EveryControl, IsInItsPlaceInTheTableOfParameters) {
  // Whoever adds a slider adds it above.
  for (const int model : {0, 1, 2}) {
    Session session({model, Robot::Obeys, {true, true, true}});
    std::size_t known = 1;  // the frame rate
    for (const auto& [name, id, models] : kSliders)
      known += static_cast<std::size_t>(std::count(models.begin(), models.end(), model));
    EXPECT_EQ(static_cast<std::size_t>(session.panel->findChildren<QSlider*>().size()), known);
  }
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// Switching the camera of a robot that takes calls without waiting for the answers before: the same
// as of any other robot, with fewer waits.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

constexpr auto kPipelining = TestRobot::Offers::Pipelining;
const std::vector<int> kParameters = {0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 17, 20, 21, 33};

std::set<std::string> asSet(const Lines& lines) {
  return {lines.begin(), lines.end()};
}

void setAll(CameraRobot& viewer, unsigned seed) {
  std::mt19937 random(seed);
  for (const int id : kParameters) {
    const bool isBox = id == 7 || id == 8 || (id >= 11 && id <= 13);
    const int value = static_cast<int>(random() % 700) - 200;  // some out of every slider's range
    viewer.set(id, isBox ? value % 2 != 0 : id == 20 ? 9 * (value % 2) : value);
  }
}

struct Outcome {
  PanelState panel;
  std::vector<int> robot;
  std::set<std::string> writes;
  bool operator==(const Outcome&) const = default;
};

// What is shown, and what the robot has, after a switch from the one set of values to the other.
Outcome afterSwitch(int model, TestRobot::Offers offers, unsigned seed) {
  CameraRobot viewer(model, offers);
  setAll(viewer, seed);
  VideoSettingsWidget panel(viewer.module, nullptr);
  panel.show();
  setAll(viewer, seed + 1000);
  viewer.takeCameraCalls();
  panel.onCameraSelect(1);
  Outcome outcome;
  outcome.panel = stateOf(panel);
  for (const std::string& write : viewer.takeWrites()) outcome.writes.insert(write);
  for (const int id : kParameters) outcome.robot.push_back(viewer.get(id));
  return outcome;
}

}  // namespace

TEST(CameraFollowing, AsksForWhatAPlainRobotIsAskedFor) {
  for (const int model : {0, 1, 2}) {
    std::set<std::string> asked[2];
    for (const auto offers : {TestRobot::Offers::Nothing, kPipelining}) {
      CameraRobot viewer(model, offers);
      viewer.set(20, 9);
      viewer.set(33, -50);
      viewer.set(6, 50);
      VideoSettingsWidget panel(viewer.module, nullptr);
      viewer.takeCameraCalls();
      panel.onCameraSelect(1);
      const Lines calls = viewer.takeCameraCalls();
      asked[offers == kPipelining] = asSet(calls);
      EXPECT_EQ(calls.at(0), "setParam(18, 1)");
      EXPECT_EQ(calls.at(1), "getParam(18)");
      if (offers == kPipelining) {
        EXPECT_EQ(calls.size(), asSet(calls).size()) << "once each";
      }
    }
    EXPECT_EQ(asked[0], asked[1]) << model;
  }
}

TEST(CameraFollowing, HasAskedForEverythingBeforeItWritesAnything) {
  const std::pair<int, std::size_t> kAsked[] = {{0, 10}, {1, 14}, {2, 12}};
  for (const auto& [model, asked] : kAsked) {
    CameraRobot viewer(model, kPipelining);
    viewer.set(20, 9);
    VideoSettingsWidget panel(viewer.module, nullptr);
    viewer.set(20, 0);  // the first to be followed, so the first to be written back
    viewer.takeCameraCalls();
    panel.onCameraSelect(1);
    const Lines calls = viewer.takeCameraCalls();
    const auto firstWrite = std::find_if(
        calls.begin() + 2, calls.end(), [](const auto& call) { return call.rfind("set", 0) == 0; });
    ASSERT_NE(firstWrite, calls.end());
    EXPECT_EQ(asSet({calls.begin() + 2, firstWrite}).size(), asked) << model;
  }
}

TEST(CameraFollowing, ShowsAndWritesWhatItDoesOfAPlainRobot) {
  for (const int model : {0, 1, 2}) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
      const Outcome plain = afterSwitch(model, TestRobot::Offers::Nothing, seed);
      EXPECT_GE(plain.panel.size(), 14u);
      EXPECT_EQ(afterSwitch(model, kPipelining, seed), plain) << model << ", " << seed;
    }
  }
}

TEST(CameraFollowing, LogsEachWriteThatFailed) {
  CameraRobot viewer(0, kPipelining);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.set(8, 1);
  viewer.set(1, 99);
  viewer.device->answer("setParam", [](const Ky::KyValue::Array& arguments) {
    if (arguments.size() == 3) throw Ky::KyError("not to be written: " + arguments[0].toString());
    return Ky::KyValue();
  });
  viewer.set(18, 1);
  viewer.log.clear();
  panel.onCameraSelect(1);
  EXPECT_EQ(viewer.log.lines(), (Lines{"error setCameraParam: not to be written: 8",
                                       "error setCameraParam: not to be written: 1"}));
  for (const auto& record : viewer.log.records()) {
    if (record.category == "periscope") {
      EXPECT_EQ(record.subject, viewer.broker->address().toString());
    }
  }
}

TEST(CameraFollowing, FollowsTheOldCameraWhenTheRobotRefusesTheSwitch) {
  CameraRobot viewer(1, kPipelining);
  viewer.set(20, 9);
  VideoSettingsWidget panel(viewer.module, nullptr);
  viewer.makeRefused(18);
  viewer.takeCameraCalls();
  panel.onCameraSelect(1);
  const Lines calls = viewer.takeCameraCalls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "getParam(0, 0)"), 1);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "getParam(0, 1)"), 0);
}

// SPDX-License-Identifier: Apache-2.0
// A robot may be killed, frozen and restarted in the middle of its stream: the window stays alive.
#include <gtest/gtest.h>

#include <QPointer>
#include <algorithm>
#include <csignal>
#include <random>

#include "lookout/lookout_widget.h"
#include "support/log_capture.h"
#include "window/robot_area.h"
#include "window_on_robots.h"

using Lookout::RobotSession;
using State = Lookout::RobotSession::State;

namespace {

std::vector<std::string> onPort(int port) {
  return {"--port", std::to_string(port)};
}

bool says(const LogCapture& log, const std::string& text) {
  for (const auto& record : log.records())
    if (record.text.find(text) != std::string::npos) return true;
  return false;
}

std::ptrdiff_t complaints(const LogCapture& log) {
  const auto records = log.records();
  return std::count_if(records.begin(), records.end(), [](const zu::log::Record& record) {
    return record.text == "Wrong number of elements";
  });
}

bool playing(const RobotSession& session) {
  return qobject_cast<LookoutWidget*>(session.widget())->isPlaying();
}

TEST(LostRobot, AKilledRobotIsLostAndItsSuccessorFound) {
  LogCapture log;
  auto robot = std::make_unique<KyrobotProcess>();
  const Ky::KyAddress address = robot->address();
  WindowOnRobots desktop;
  RobotSession* session = desktop.play(address);
  ASSERT_NE(session, nullptr);

  StallMeter stalls;
  const QPointer<QWidget> widget = session->widget();
  robot->process().signal(SIGKILL);
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Silent; }));
  robot.reset();
  robot = std::make_unique<KyrobotProcess>(onPort(address.port));
  ASSERT_EQ(robot->address(), address);
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Connected; }));
  // It is another robot than before, and has another widget.
  EXPECT_TRUE(says(log, "lost the robot at " + address.toString() + ": it was restarted"));
  EXPECT_TRUE(widget.isNull());
  // It was playing, so it plays again.
  EXPECT_TRUE(desktop.waitForFrames(*session, 3));
  EXPECT_LT(stalls.longestMs(), kLongestStallMs);
}

TEST(LostRobot, AFrozenRobotIsSilentAndGoesOnWhereItWasWhenItThaws) {
  LogCapture log;
  KyrobotProcess robot;
  const Ky::KyAddress address = robot.address();
  WindowOnRobots desktop;
  RobotSession* session = desktop.play(address);
  ASSERT_NE(session, nullptr);

  StallMeter stalls;
  const QPointer<QWidget> widget = session->widget();
  robot.process().signal(SIGSTOP);
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Silent; }));
  EXPECT_TRUE(says(log, "no sign of life"));
  // It asks nothing of a robot that does not answer, and does not complain at every tick.
  ASSERT_TRUE(waitUntil([&] { return !playing(*session); }));
  // The tick that was under way may still do; a viewer that goes on does so five times a second.
  const auto before = complaints(log);
  EXPECT_FALSE(waitUntil([&] { return complaints(log) > before + 1; }, std::chrono::seconds(1)));
  robot.process().signal(SIGCONT);
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Connected; }));
  EXPECT_TRUE(desktop.waitForFrames(*session, 3));
  EXPECT_EQ(session->widget(), widget);
  EXPECT_FALSE(says(log, "lost the robot"));
  EXPECT_LT(stalls.longestMs(), kLongestStallMs);
}

TEST(LostRobot, ADockCanBeClosedWhileItsRobotIsFrozen) {
  KyrobotProcess robot;
  WindowOnRobots desktop;
  RobotSession* session = desktop.play(robot.address());
  ASSERT_NE(session, nullptr);

  robot.process().signal(SIGSTOP);
  StallMeter stalls;
  desktop.window->closeCurrentRobot();
  ASSERT_TRUE(waitUntil([&] { return desktop.window->robots().docks().empty(); }));
  EXPECT_LT(stalls.longestMs(), kLongestStallMs);
}

TEST(LostRobot, ADockCanBeClosedAtAnyMomentOfTheStream) {
  KyrobotProcess robot;
  const Ky::KyAddress address = robot.address();
  WindowOnRobots desktop;
  std::mt19937 random(3);
  for (int round = 0; round < 8; ++round) {
    RobotSession* session = desktop.play(address);
    ASSERT_NE(session, nullptr) << round;
    ASSERT_TRUE(desktop.waitForFrames(*session, random() % 4));
    desktop.window->closeCurrentRobot();
    ASSERT_TRUE(waitUntil([&] { return desktop.window->robots().docks().empty(); })) << round;
  }
}

TEST(LostRobot, TheWindowCanBeClosedInMidStream) {
  KyrobotProcess robot;
  WindowOnRobots desktop;
  ASSERT_NE(desktop.play(robot.address()), nullptr);
  desktop.window.reset();
  robot.process().signal(SIGINT);
  EXPECT_EQ(robot.process().waitForExit(), 0);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// The viewer's stage in Lookout's window, on a real robot.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QPointer>

#include "lookout/lookout_widget.h"
#include "robots/robot_report.h"
#include "robots/robot_views.h"
#include "robots/view_dock.h"
#include "window_on_robots.h"

using namespace Lookout;
using State = RobotSession::State;

namespace {

bool paints(const ViewDock& dock) {
  const quint64 before = dock.framesPainted();
  return waitUntil([&] { return dock.framesPainted() >= before + 3; });
}

}  // namespace

TEST(StageInWindow, ShowsThePictureInTheSizeThatWasChosen) {
  KyrobotProcess robot;
  WindowOnRobots desktop;
  RobotDock* dock = desktop.window->connectTo(robot.address());
  dock->session().chooseAtFirst("size", "640x480");
  dock->session().chooseAtFirst("fps", "30");
  const ViewDock* stage = dock->views().open("stage");
  ASSERT_NE(stage, nullptr);
  dock->session().setPlaying(true);
  ASSERT_TRUE(paints(*stage));
  EXPECT_EQ(dock->session().widget()->findChild<QComboBox*>()->currentText(), "640 * 480");
  EXPECT_EQ(stage->windowTitle(), "Stage - " + dock->name());
  EXPECT_TRUE(waitUntil([&] { return stage->reading().state == PictureState::Live; }));
}

TEST(StageInWindow, PlaysOnInItsPlaceOnARobotThatWasRestarted) {
  auto robot = std::make_unique<KyrobotProcess>();
  const Ky::KyAddress address = robot->address();
  WindowOnRobots desktop;
  RobotSession* session = desktop.play(address);
  ASSERT_NE(session, nullptr);
  const RobotDock* dock = desktop.window->connectTo(address);
  ViewDock* stage = dock->views().open("stage");
  stage->setFillsScreen(true);
  ASSERT_TRUE(paints(*stage));
  const QPointer<LookoutWidget> before(stage->view());
  robot.reset();
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Silent; }));
  robot = std::make_unique<KyrobotProcess>(
      std::vector<std::string>{"--port", std::to_string(address.port)});
  ASSERT_TRUE(waitUntil([&] { return before.isNull() && session->state() == State::Connected; }));
  EXPECT_TRUE(stage->fillsScreen());
  EXPECT_TRUE(paints(*stage));
}

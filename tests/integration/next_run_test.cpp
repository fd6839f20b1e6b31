// SPDX-License-Identifier: Apache-2.0
// The viewer goes on in the next run where it was left, on a real robot.
#include <gtest/gtest.h>

#include <QComboBox>

#include "lookout/lookout_widget.h"
#include "window_on_robots.h"

using Lookout::RobotSession;
using State = RobotSession::State;

namespace {

LookoutWidget* viewer(const WindowOnRobots& desktop, const Ky::KyAddress& robot) {
  const RobotSession& session = desktop.window->connectTo(robot)->session();
  EXPECT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  return qobject_cast<LookoutWidget*>(session.widget());
}

QComboBox* resolution(const LookoutWidget& viewer) {
  return viewer.findChild<QComboBox*>();
}

}  // namespace

TEST(NextRun, ShowsARobotAsItWasLeftAndPlaysAgain) {
  KyrobotProcess robot;
  WindowOnRobots desktop;
  LookoutWidget* widget = viewer(desktop, robot.address());
  const int usual = resolution(*widget)->currentIndex();
  resolution(*widget)->setCurrentIndex(usual == 0 ? 1 : 0);
  widget->setPlaying(true);
  desktop.window->close();

  desktop.open();
  widget = viewer(desktop, robot.address());
  EXPECT_EQ(resolution(*widget)->currentIndex(), usual == 0 ? 1 : 0);
  EXPECT_TRUE(waitUntil([&] { return widget->framesPainted() >= 3; }));
}

TEST(NextRun, IsLikeTheFirstForARobotThatNobodyTouched) {
  KyrobotProcess robot;
  WindowOnRobots desktop;
  viewer(desktop, robot.address());
  desktop.window->close();
  EXPECT_EQ(
      Lookout::RobotMemory::widget(QString::fromStdString(robot.address().toString()), "periscope"),
      std::nullopt);
  desktop.open();
  EXPECT_FALSE(viewer(desktop, robot.address())->isPlaying());
}

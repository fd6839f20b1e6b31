// SPDX-License-Identifier: Apache-2.0
// The window while one of its widgets waits for the robot.
#include "window/paint_while_waiting.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPointer>
#include <QStatusBar>

#include "robots/robot_session.h"
#include "slow_robot.h"
#include "support/wait.h"
#include "test_plugin.h"

using Lookout::PaintWhileWaiting;
using Lookout::RobotSession;
using State = RobotSession::State;

namespace {

// Runs on the GUI thread, again and again, while the robot is being waited for.
class EachTick {
 public:
  explicit EachTick(std::function<void(int tick)> action) : fAction(std::move(action)) {
    QObject::connect(&fTimer, &QTimer::timeout, [this] { fAction(++fTick); });
    fTimer.start(20);
  }

 private:
  std::function<void(int)> fAction;
  QTimer fTimer;
  int fTick = 0;
};

class PaintWhileWaitingTest : public testing::Test {
 protected:
  bool callSlow() { return plugin.brokers.back()->call("Slow", "wait", {}).asBool(); }

  SlowRobot robot;
  QStatusBar status;
  PaintWhileWaiting painting{status};
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  RobotSession session{plugin, robot.address(), "", home, closer};

  bool connect() {
    session.start();
    return waitUntil([&] { return session.state() == State::Connected; });
  }
};

}  // namespace

TEST_F(PaintWhileWaitingTest, TimersAndPaintsGoOnWhileAModuleTakesItsTime) {
  ASSERT_TRUE(connect());
  class Painted : public QWidget {
   public:
    void paintEvent(QPaintEvent*) override { ++count; }
    int count = 0;
  } painted;
  painted.show();
  const EachTick tick([&](int) {
    painted.update();
    if (painted.count >= 3) robot.answer();  // else the call runs into its deadline
  });
  EXPECT_TRUE(callSlow());
}

TEST_F(PaintWhileWaitingTest, TellsWhatIsWaitedForAndThatItIsOver) {
  ASSERT_TRUE(connect());
  const EachTick tick([&](int) {
    if (!status.currentMessage().isEmpty()) robot.answer();
  });
  QString told;
  QObject::connect(&status, &QStatusBar::messageChanged, [&](const QString& text) {
    if (!text.isEmpty()) told = text;
  });
  EXPECT_TRUE(callSlow());
  EXPECT_EQ(told, "Waiting for Slow at " + robot.name() + "...");
  ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::BusyCursor);
  EXPECT_TRUE(waitUntil([&] { return status.currentMessage().isEmpty(); }));
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(PaintWhileWaitingTest, SaysNothingOfAnAnswerThatComesSoon) {
  ASSERT_TRUE(connect());
  QObject::connect(&status, &QStatusBar::messageChanged,
                   [](const QString& text) { EXPECT_EQ(text, ""); });
  robot.answer();
  EXPECT_TRUE(callSlow());
}

TEST_F(PaintWhileWaitingTest, ARobotThatIsClosedMeanwhileKeepsItsWidgetUntilTheCallIsOver) {
  ASSERT_TRUE(connect());
  const QPointer<QWidget> widget = session.widget();
  const EachTick tick([&](int count) {
    if (count == 1) session.close();
    if (count == 5) {
      EXPECT_FALSE(widget.isNull());
      robot.answer();
    }
  });
  EXPECT_TRUE(callSlow());
  EXPECT_FALSE(widget.isNull());
  EXPECT_EQ(session.state(), State::Closed);
  EXPECT_TRUE(waitUntil([&] { return widget.isNull(); }));
}

TEST_F(PaintWhileWaitingTest, ARobotThatIsRestartedMeanwhileGetsItsWidgetWhenTheCallIsOver) {
  ASSERT_TRUE(connect());
  const QPointer<QWidget> widget = session.widget();
  SlowRobot other;  // of whom somebody asks something meanwhile
  Ky::KyBrokerOptions options;
  options.name = "desktop";
  options.parent = other.address();
  const auto desktop = Ky::KyBroker::create(std::move(options));
  int ticksSinceBack = 0;
  const EachTick tick([&](int count) {
    if (count == 1) robot.restart();
    if (session.state() == State::Lost && robot.wasSpokenTo()) ++ticksSinceBack;
    if (ticksSinceBack == 20) other.answer();
  });
  EXPECT_TRUE(desktop->call("Slow", "wait", {}, std::chrono::seconds(20)).asBool());
  EXPECT_FALSE(widget.isNull());
  EXPECT_TRUE(waitUntil([&] { return widget.isNull() && session.state() == State::Connected; }));
  desktop->shutdown();
}

TEST_F(PaintWhileWaitingTest, AWidgetIsMadeWhileItsCallsTakeTheirTime) {
  int ticks = 0;
  plugin.whileMaking = [&] { EXPECT_TRUE(callSlow()); };
  const EachTick tick([&](int) {
    if (!plugin.brokers.empty() && ++ticks == 5) robot.answer();
  });
  ASSERT_TRUE(connect());
  EXPECT_GE(ticks, 5);
}

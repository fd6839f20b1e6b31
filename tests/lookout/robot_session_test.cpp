// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_session.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QSignalSpy>

#include "guests.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "test_plugin.h"

using Lookout::RobotSession;
using State = RobotSession::State;

namespace {

struct Session {
  explicit Session(std::optional<Ky::KyAddress> robot, const std::string& brokerName = {})
      : session(plugin, robot, "/icons/", home, closer) {
    if (!brokerName.empty()) session.setBrokerName(brokerName);
    session.start();
  }
  bool waitFor(State state) {
    return waitUntil([&] { return session.state() == state; });
  }

  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  RobotSession session;
};

Ky::KyAddress nobodyListensThere() {
  TcpRobot robot;
  return robot.address();
}

}  // namespace

TEST(RobotSession, AsksThePluginForAWidgetWhenTheRobotAnswers) {
  TcpRobot robot;
  Session on(robot.address());
  EXPECT_EQ(on.session.state(), State::Connecting);
  EXPECT_TRUE(on.plugin.events.isEmpty());

  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_EQ(on.plugin.events, QStringList{"getWidget"});
  EXPECT_EQ(on.session.widget(), on.plugin.latest());
  EXPECT_EQ(on.session.widget()->parentWidget(), &on.home);
  EXPECT_EQ(on.plugin.icons, "/icons/");
  EXPECT_TRUE(on.session.problem().isEmpty());
}

TEST(RobotSession, AnnouncesTheWidgetBeforeItSaysConnected) {
  TcpRobot robot;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  RobotSession session(plugin, robot.address(), "", home, closer);
  QStringList order;
  QObject::connect(&session, &RobotSession::widgetMade, [&] { order << "widget"; });
  QObject::connect(&session, &RobotSession::changed, [&] {
    if (session.state() == State::Connected) order << "connected";
  });
  session.start();
  ASSERT_TRUE(waitUntil([&] { return order.size() == 2; }));
  EXPECT_EQ(order, (QStringList{"widget", "connected"}));
}

TEST(RobotSession, TellsEveryBrokerOfItsRobotWhatTheUserPrefers) {
  for (const char* name : {"TestBroker", "another"}) {  // lent, and made by the plug-in
    TcpRobot robot;
    Session on(robot.address(), name);
    on.session.setPreference("pictures", "exact");
    ASSERT_TRUE(on.waitFor(State::Connected)) << name;
    ASSERT_EQ(on.plugin.brokers.size(), 1u);
    EXPECT_EQ(on.plugin.brokers[0]->preference("pictures"), "exact") << name;

    const QWidget* widget = on.session.widget();
    on.session.setPreference("pictures", "saving");
    EXPECT_EQ(on.plugin.brokers[0]->preference("pictures"), "saving") << name;
    EXPECT_EQ(on.session.widget(), widget) << "it goes on";

    robot.stop();
    ASSERT_TRUE(on.waitFor(State::Lost)) << name;
    robot.start();
    ASSERT_TRUE(on.waitFor(State::Connected)) << name;
    ASSERT_EQ(on.plugin.brokers.size(), 2u);
    EXPECT_EQ(on.plugin.brokers[1]->preference("pictures"), "saving") << name;
    EXPECT_EQ(on.session.preference("pictures"), "saving");
  }
}

TEST(RobotSession, HandsItsConnectionToAPluginThatAsksForOneOfThatName) {
  TcpRobot robot;
  const auto guests = Ky::KyModule::createModule<Guests>(robot.broker());
  Session on(robot.address(), "TestBroker");
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_GT(on.session.statistics().bytesIn, 0u);
  on.session.close();
  EXPECT_EQ(on.plugin.events, (QStringList{"getWidget", "deleted"}));
  EXPECT_EQ(on.plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  ASSERT_TRUE(waitUntil([&] { return guests->left > 0; }));
  EXPECT_EQ(guests->names, QStringList{"TestBroker"}) << "one connection in all";
}

TEST(RobotSession, HandsItsConnectionOverAfterALossToo) {
  TcpRobot robot;
  Session on(robot.address(), "TestBroker");
  ASSERT_TRUE(on.waitFor(State::Connected));
  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  robot.start();
  const auto guests = Ky::KyModule::createModule<Guests>(robot.broker());
  ASSERT_TRUE(on.waitFor(State::Connected));
  ASSERT_EQ(on.plugin.brokers.size(), 2u);
  EXPECT_EQ(on.plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  EXPECT_EQ(on.plugin.brokers[1]->connection(), Ky::KyConnection::Connected);
  on.session.close();
  ASSERT_TRUE(waitUntil([&] { return guests->left > 0; }));
  EXPECT_EQ(guests->names, QStringList{"TestBroker"});
}

TEST(RobotSession, ConnectsAgainWhenAPluginFailsWithTheConnectionThatItWasHanded) {
  TcpRobot robot;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  plugin.failure = "no camera here";
  RobotSession session(plugin, robot.address(), "", home, closer);
  session.setBrokerName("TestBroker");
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.problem() == "no camera here"; }));
  EXPECT_EQ(plugin.brokers.front()->connection(), Ky::KyConnection::Closed);
  plugin.failure.clear();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_EQ(plugin.brokers.back()->connection(), Ky::KyConnection::Connected);
}

TEST(RobotSession, SaysWhyItIsStillConnecting) {
  Session on(nobodyListensThere());
  ASSERT_TRUE(waitUntil([&] { return on.session.problem().contains("nobody listens there"); }));
  EXPECT_EQ(on.session.state(), State::Connecting);
  EXPECT_TRUE(on.plugin.events.isEmpty());
}

TEST(RobotSession, ConnectsWhenTheRobotIsSwitchedOnLater) {
  TcpRobot robot;
  robot.stop();
  Session on(robot.address());
  ASSERT_TRUE(waitUntil([&] { return !on.session.problem().isEmpty(); }));
  robot.start();
  EXPECT_TRUE(on.waitFor(State::Connected));
}

TEST(RobotSession, PlaysEachWidgetFromTheStartWhenToldSoBefore) {
  TcpRobot robot;
  Session on(robot.address());
  on.session.setPlaying(true);
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_TRUE(on.plugin.latest()->isPlaying());
}

TEST(RobotSession, TellsTheWidgetOfALossAndKeepsItsPicture) {
  TcpRobot robot;
  Session on(robot.address());
  ASSERT_TRUE(on.waitFor(State::Connected));
  QWidget* widget = on.session.widget();
  QSignalSpy disconnected(widget, SIGNAL(disconnected(WidgetInterface*)));

  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  EXPECT_FALSE(on.session.problem().isEmpty());
  EXPECT_EQ(on.session.widget(), widget);
  // What is left of it can't act on the robot that comes next.
  EXPECT_EQ(on.plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  ASSERT_EQ(disconnected.count(), 1);
}

TEST(RobotSession, GetsANewWidgetWhenTheRobotIsBackAndGoesOnPlaying) {
  TcpRobot robot;
  Session on(robot.address());
  ASSERT_TRUE(on.waitFor(State::Connected));
  on.plugin.latest()->setPlaying(true);  // the user, in the widget
  on.plugin.latest()->frames = 7;
  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  on.plugin.events.clear();

  robot.start();
  ASSERT_TRUE(on.waitFor(State::Connected));
  // The old widget could not reach the robot that came back.
  EXPECT_EQ(on.plugin.events, (QStringList{"deleted after its broker was closed", "getWidget"}));
  ASSERT_EQ(on.plugin.brokers.size(), 2u);
  EXPECT_EQ(on.plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  EXPECT_EQ(on.plugin.brokers[1]->connection(), Ky::KyConnection::Connected);
  EXPECT_TRUE(on.plugin.latest()->isPlaying());
  on.plugin.latest()->frames = 3;
  EXPECT_EQ(on.session.framesPainted(), 10u);
}

TEST(RobotSession, StaysPausedAfterALossWhenItWasPausedBefore) {
  TcpRobot robot;
  Session on(robot.address());
  on.session.setPlaying(true);
  ASSERT_TRUE(on.waitFor(State::Connected));
  on.plugin.latest()->setPlaying(false);
  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  robot.start();
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_FALSE(on.plugin.latest()->isPlaying());
}

TEST(RobotSession, SurvivesLossAfterLoss) {
  TcpRobot robot;
  Session on(robot.address());
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(on.waitFor(State::Connected));
    robot.stop();
    ASSERT_TRUE(on.waitFor(State::Lost));
    robot.start();
  }
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_EQ(on.plugin.events.count("getWidget"), 3);
  EXPECT_EQ(on.plugin.events.count("disconnected"), 2);
  EXPECT_EQ(on.plugin.events.count("deleted after its broker was closed"), 2);
}

TEST(RobotSession, HandsWhatTheUserSetToTheNextWidget) {
  TcpRobot robot;
  Session on(robot.address());
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_EQ(on.plugin.latest()->state, QByteArray()) << "nothing was set yet";
  on.plugin.latest()->state = "as the user likes it";
  on.plugin.latest()->setPlaying(true);
  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  robot.start();
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_EQ(on.plugin.latest()->state, "as the user likes it");
  EXPECT_TRUE(on.plugin.latest()->isPlaying());
}

TEST(RobotSession, ShowsWhyAPluginFailsAndTriesAgain) {
  TcpRobot robot;
  LogCapture log;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  plugin.failure = "no camera here";
  RobotSession session(plugin, robot.address(), "", home, closer);
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.problem() == "no camera here"; }));
  EXPECT_EQ(session.state(), State::Connecting);
  EXPECT_EQ(session.widget(), nullptr);
  EXPECT_EQ(plugin.brokers.front()->connection(), Ky::KyConnection::Closed);
  EXPECT_EQ(log.lines("lookout"),
            std::vector<std::string>{"error session: " + robot.address().toString() +
                                     ": no camera here"});
  plugin.failure.clear();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_TRUE(session.problem().isEmpty());
}

TEST(RobotSession, SurvivesWhateverAPluginThrowsOrReturns) {
  TcpRobot robot;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  plugin.throwsNumber = true;
  RobotSession session(plugin, robot.address(), "", home, closer);
  session.start();
  ASSERT_TRUE(
      waitUntil([&] { return session.problem() == "the plug-in failed and did not say why"; }));
  plugin.throwsNumber = false;
  plugin.makesNothing = true;
  ASSERT_TRUE(waitUntil([&] { return session.problem() == "the plug-in made no widget"; }));
  plugin.makesNothing = false;
  EXPECT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
}

TEST(RobotSession, FailsAndRecoversAfterALoss) {
  TcpRobot robot;
  Session on(robot.address());
  on.session.setPlaying(true);
  ASSERT_TRUE(on.waitFor(State::Connected));
  on.plugin.failure = "still booting";
  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  robot.start();
  ASSERT_TRUE(waitUntil([&] { return on.session.problem() == "still booting"; }));
  EXPECT_EQ(on.session.widget(), nullptr);
  on.plugin.failure.clear();
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_TRUE(on.plugin.latest()->isPlaying());
}

TEST(RobotSession, WatchesTheRobotItselfForAPluginWithoutABroker) {
  TcpRobot robot;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  plugin.opensBroker = false;
  RobotSession session(plugin, robot.address(), "", home, closer);
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_GT(session.statistics().bytesIn, 0u);
  robot.stop();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Lost; }));
  robot.start();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_EQ(plugin.events.count("getWidget"), 2);
}

TEST(RobotSession, MakesTheWidgetWithoutARobotWhenNoneIsNeeded) {
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  plugin.opensBroker = false;
  RobotSession session(plugin, std::nullopt, "", home, closer);
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_EQ(session.statistics().bytesIn, 0u);
}

TEST(RobotSession, CountsTheBytesOfTheWidgetsConnection) {
  TcpRobot robot;
  Session on(robot.address());
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_TRUE(waitUntil([&] { return on.session.statistics().roundTrip.count() > 0; }));
  const std::uint64_t before = on.plugin.brokers[0]->statistics().bytesIn;
  EXPECT_GT(before, 0u);
  EXPECT_GE(on.session.statistics().bytesIn, before);
}

TEST(RobotSession, ClosesInEveryStateInTheRightOrder) {
  TcpRobot robot;
  {
    Session connecting(nobodyListensThere());
    QSignalSpy closed(&connecting.session, &RobotSession::closed);
    connecting.session.close();
    EXPECT_EQ(closed.count(), 1);
    connecting.session.close();
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(connecting.session.state(), State::Closed);
  }
  {
    Session connected(robot.address());
    ASSERT_TRUE(connected.waitFor(State::Connected));
    connected.session.close();
    EXPECT_EQ(connected.plugin.events, (QStringList{"getWidget", "deleted"}));
    EXPECT_EQ(connected.plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  }
  {
    Session lost(robot.address());
    ASSERT_TRUE(lost.waitFor(State::Connected));
    robot.stop();
    ASSERT_TRUE(lost.waitFor(State::Lost));
    lost.session.close();
    EXPECT_EQ(lost.plugin.events,
              (QStringList{"getWidget", "disconnected", "deleted after its broker was closed"}));
    EXPECT_EQ(lost.plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  }
}

TEST(RobotSession, ClosesAfterThePluginReturnsWhenAskedInItsMessageBox) {
  TcpRobot robot;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  RobotSession session(plugin, robot.address(), "", home, closer);
  QSignalSpy closed(&session, &RobotSession::closed);
  plugin.whileMaking = [&] {
    session.close();
    EXPECT_EQ(closed.count(), 0);
    QCoreApplication::processEvents();
  };
  session.start();
  ASSERT_TRUE(waitUntil([&] { return closed.count() == 1; }));
  EXPECT_EQ(plugin.events, (QStringList{"getWidget", "deleted"}));
  EXPECT_EQ(plugin.brokers[0]->connection(), Ky::KyConnection::Closed);
  EXPECT_EQ(session.state(), State::Closed);
}

TEST(RobotSession, NeverAsksAPluginForTwoWidgetsAtOnce) {
  TcpRobot first, second;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  int depth = 0;
  int deepest = 0;
  RobotSession one(plugin, first.address(), "", home, closer);
  RobotSession two(plugin, second.address(), "", home, closer);
  plugin.whileMaking = [&] {
    deepest = std::max(deepest, ++depth);
    // As long as a message box might: the other robot has answered and even been heard again.
    for (const RobotSession* session : {&one, &two})
      EXPECT_TRUE(waitUntil([&] {
        return session->state() == State::Connected || session->statistics().roundTrip.count() > 0;
      }));
    QCoreApplication::sendPostedEvents();
    --depth;
  };
  one.start();
  two.start();
  ASSERT_TRUE(waitUntil(
      [&] { return one.state() == State::Connected && two.state() == State::Connected; }));
  EXPECT_EQ(deepest, 1);
  EXPECT_NE(one.widget(), two.widget());
}

TEST(RobotSession, WaitsForAnOpenDialogOfTheOldWidget) {
  TcpRobot robot;
  Session on(robot.address());
  ASSERT_TRUE(on.waitFor(State::Connected));
  QPointer<QWidget> old = on.session.widget();
  QDialog dialog(old);
  dialog.setModal(true);
  dialog.show();
  robot.stop();
  ASSERT_TRUE(on.waitFor(State::Lost));
  robot.start();
  EXPECT_FALSE(waitUntil([&] { return old.isNull(); }, std::chrono::seconds(2)));
  EXPECT_EQ(on.session.widget(), old);

  dialog.setParent(nullptr);
  dialog.hide();
  ASSERT_TRUE(on.waitFor(State::Connected));
  EXPECT_TRUE(old.isNull());
}

TEST(RobotSession, KeepsSeveralRobotsOfOnePluginApart) {
  TcpRobot first, second;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  RobotSession one(plugin, first.address(), "", home, closer);
  RobotSession two(plugin, second.address(), "", home, closer);
  one.start();
  two.start();
  ASSERT_TRUE(waitUntil(
      [&] { return one.state() == State::Connected && two.state() == State::Connected; }));
  first.stop();
  ASSERT_TRUE(waitUntil([&] { return one.state() == State::Lost; }));
  EXPECT_EQ(two.state(), State::Connected);
  one.close();
  EXPECT_EQ(two.state(), State::Connected);
  EXPECT_NE(two.widget(), nullptr);
  EXPECT_GT(two.statistics().bytesIn, 0u);
}

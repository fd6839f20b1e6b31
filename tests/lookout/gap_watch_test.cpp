// SPDX-License-Identifier: Apache-2.0
// Widgets that were made while the robot did not answer.
#include "robots/gap_watch.h"

#include <gtest/gtest.h>

#include "robots/robot_session.h"
#include "slow_robot.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "test_plugin.h"

using Lookout::GapWatch;
using Lookout::RobotSession;
using State = RobotSession::State;
using namespace std::chrono_literals;

namespace {

class GapsTest : public testing::Test {
 protected:
  // One of the questions that a widget asks while it is made is not answered in time.
  void ask() {
    try {
      plugin.brokers.back()->call("Slow", "wait", {}, 1ms);
    } catch (const Ky::KyError&) {
      return;
    }
  }
  auto made() const { return plugin.events.count("getWidget"); }

  SlowRobot robot;
  QWidget home;
  Lookout::BrokerCloser closer;
  TestPlugin plugin;
  RobotSession session{plugin, robot.address(), "", home, closer};
};

}  // namespace

TEST_F(GapsTest, AWidgetThatLacksAnAnswerIsMadeAgainAndTakesUpTheSame) {
  session.beginWith({"all that was set", true});
  plugin.whileMaking = [this] {
    if (made() == 1) ask();
  };
  session.start();
  ASSERT_TRUE(waitUntil([&] { return made() == 2 && session.state() == State::Connected; }));
  EXPECT_EQ(plugin.latest()->state, "all that was set");
  EXPECT_TRUE(plugin.latest()->isPlaying());
  EXPECT_TRUE(plugin.events.contains("deleted after its broker was closed"))
      << "it could have ended its film";
  EXPECT_FALSE(waitUntil([&] { return made() > 2; }, 1000ms));
}

TEST_F(GapsTest, WhatTheUserSetMeanwhileCounts) {
  session.beginWith({"before", false});
  plugin.whileMaking = [this] {
    if (made() == 1) ask();
  };
  QObject::connect(&session, &RobotSession::changed, &session, [&] {
    if (made() == 1 && session.state() == State::Connected) plugin.latest()->state = "by the user";
  });
  session.start();
  ASSERT_TRUE(waitUntil([&] { return made() == 2 && session.state() == State::Connected; }));
  EXPECT_EQ(plugin.latest()->state, "by the user");
}

TEST_F(GapsTest, WhatItCouldNotTakeUpIsStillRemembered) {
  session.beginWith({"all that was set", false});
  plugin.takesUp = "what it could";
  plugin.whileMaking = [this] { ask(); };
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_EQ(plugin.latest()->state, "what it could");
  EXPECT_EQ(session.widgetMemory().state, "all that was set");
}

TEST_F(GapsTest, AWidgetThatGotAllItsAnswersStays) {
  plugin.whileMaking = [this] { EXPECT_FALSE(plugin.brokers.back()->moduleNames().empty()); };
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_FALSE(waitUntil([&] { return made() > 1; }, 1000ms));
}

TEST_F(GapsTest, ItWaitsForAModuleThatIsMute) {
  plugin.whileMaking = [this] {
    if (made() > 1) return;
    EXPECT_THROW(plugin.brokers.back()->call("Slow", "wait", {}), Ky::KyError);
  };
  session.start();
  ASSERT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
  EXPECT_EQ(session.statistics().mute, 1);
  EXPECT_FALSE(waitUntil([&] { return made() > 1; }, 1000ms));
  robot.answer();
  EXPECT_TRUE(waitUntil([&] { return made() == 2; }));
}

TEST_F(GapsTest, ARobotThatNeverAnswersSomeCallIsAskedAgainAFewTimesOnly) {
  LogCapture log;
  plugin.whileMaking = [this] { ask(); };
  session.start();
  ASSERT_TRUE(waitUntil([&] { return made() == 1 + GapWatch::kMost; }));
  EXPECT_FALSE(waitUntil([&] { return made() > 1 + GapWatch::kMost; }, 1000ms));
  int told = 0;
  for (const auto& record : log.records())
    told += record.text.find("answers are missing") != std::string::npos ? 1 : 0;
  EXPECT_EQ(told, GapWatch::kMost);
}

// SPDX-License-Identifier: Apache-2.0
// Calls that are sent before their turn, where the robot offers that.
#include "ky/ahead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "ky/proxy.h"
#include "support/log_capture.h"
#include "support/test_robot.h"
#include "support/wait.h"

using namespace Ky;

namespace {

using Lines = std::vector<std::string>;

class AheadTest : public testing::Test {
 protected:
  // A module that keeps numbers by name, and refuses those below zero.
  boost::shared_ptr<ScriptedModule> addKeeper(TestRobot& on) {
    auto keeper = on.add("Keeper");
    keeper->answer("get", [this](const KyValue::Array&) { return KyValue(number.load()); });
    keeper->answer("set", [this](const KyValue::Array& arguments) {
      EXPECT_TRUE(waitUntil([this] { return open.load(); }));
      if (arguments.at(0).asInt() < 0) throw KyError("no number below zero");
      number = arguments.at(0).asInt();
      return KyValue();
    });
    return keeper;
  }
  int get(const boost::shared_ptr<KyBroker>& broker) const {
    return broker->call("Keeper", "get", {}).asInt();
  }

  const KyRead kGet{"Keeper", "get"};
  const KyWrites kSet = {{"Keeper", "set"}};
  std::atomic<int> number = 7;
  std::atomic<bool> open = true;
  TestRobot robot{TestRobot::Offers::Pipelining};
  TestRobot plain;
};

// The text of the error with which a call ends.
std::string errorOf(const boost::shared_ptr<KyBroker>& broker, const KyRead& call) {
  try {
    broker->call(call.module, call.method, call.arguments);
  } catch (const KyError& error) {
    return error.toString();
  }
  return "none";
}

}  // namespace

TEST_F(AheadTest, SendsAllBeforeItWaitsForAny) {
  // Each answers only once the other has been asked.
  std::atomic<int> asked = 0;
  for (const char* name : {"One", "Other"})
    robot.add(name)->answer("meet", [&asked](const KyValue::Array&) {
      ++asked;
      return KyValue(waitUntil([&] { return asked == 2; }));
    });
  const auto desktop = robot.connect();
  const KyAhead ahead(desktop, {{"One", "meet"}, {"Other", "meet"}});
  EXPECT_TRUE(desktop->call("One", "meet", {}).asBool());
  EXPECT_TRUE(desktop->call("Other", "meet", {}).asBool());
}

TEST_F(AheadTest, SendsNothingAheadToARobotThatDoesNotOfferIt) {
  addKeeper(plain);
  const auto desktop = plain.connect();
  KyAhead ahead(desktop, {kGet, kGet, {"Keeper", "none"}}, kSet);
  EXPECT_EQ(get(desktop), 7);
  desktop->call("Keeper", "set", {8});
  EXPECT_EQ(number, 8) << "it was waited for";
  EXPECT_EQ(errorOf(desktop, {"Keeper", "set", {-1}}), "Keeper.set: no number below zero");
  EXPECT_EQ(get(desktop), 8);
  EXPECT_TRUE(ahead.finish().empty());
  EXPECT_EQ(plain.calls(),
            (Lines{"Keeper.get()", "Keeper.set(8)", "Keeper.set(-1)", "Keeper.get()"}));
}

TEST_F(AheadTest, AnswersWithWhatWasSoAtTheBeginning) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  {
    const KyAhead ahead(desktop, {kGet, kGet});
    EXPECT_EQ(get(desktop), 7);
    number = 8;
    EXPECT_EQ(get(desktop), 7);
  }
  EXPECT_EQ(get(desktop), 8);
  EXPECT_EQ(robot.calls(), (Lines{"Keeper.get()", "Keeper.get()"})) << "one ahead, one after";
}

TEST_F(AheadTest, LetsEverythingElseGoOutAsEver) {
  addKeeper(robot)->answer("add", [](const KyValue::Array& arguments) {
    return KyValue(arguments.at(0).asInt() + arguments.at(1).asInt());
  });
  const auto desktop = robot.connect();
  const auto other = robot.connect("other");
  const KyAhead ahead(desktop, {{"Keeper", "add", {1, 2}}, kGet});
  EXPECT_EQ(desktop->call("Keeper", "add", {1, 2}).asInt(), 3);
  EXPECT_EQ(desktop->call("Keeper", "add", {2, 2}).asInt(), 4);
  EXPECT_EQ(get(desktop), 7);
  number = 8;
  EXPECT_EQ(get(other), 8);
  std::thread([&] { EXPECT_EQ(get(desktop), 8); }).join();
}

TEST_F(AheadTest, EndsACallWithTheErrorThatItWouldHaveHad) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  for (const KyRead& call : KyReads{{"Keeper", "none"}, {"Nobody", "get"}}) {
    const std::string wanted = errorOf(desktop, call);
    const KyAhead ahead(desktop, {call});
    EXPECT_EQ(errorOf(desktop, call), wanted);
    EXPECT_EQ(errorOf(desktop, call), wanted);
  }
}

TEST_F(AheadTest, KnowsWhichModulesArePresent) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  {
    const KyAhead ahead(desktop, {KyRead::presenceOf("Keeper"), KyRead::presenceOf("Nobody")});
    EXPECT_TRUE(desktop->isModulePresent("Keeper"));
    EXPECT_THROW(desktop->getProxy("Nobody"), KyError);
    robot.remove("Keeper");
    EXPECT_NO_THROW(desktop->getProxy("Keeper"));
  }
  EXPECT_FALSE(desktop->isModulePresent("Keeper"));
}

TEST_F(AheadTest, SendsWritesInOrderWithoutWaitingAndTellsAtTheEndWhatFailed) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  KyAhead ahead(desktop, {}, kSet);
  open = false;
  for (const int value : {1, -1, -2, 3}) desktop->call("Keeper", "set", {value});
  EXPECT_EQ(number, 7);
  open = true;
  const auto errors = ahead.finish();
  EXPECT_EQ(number, 3);
  ASSERT_EQ(errors.size(), 2u);
  EXPECT_EQ(errors[0].toString(), "Keeper.set: no number below zero");
  EXPECT_EQ(robot.calls(),
            (Lines{"Keeper.set(1)", "Keeper.set(-1)", "Keeper.set(-2)", "Keeper.set(3)"}));
  EXPECT_TRUE(ahead.finish().empty());
}

TEST_F(AheadTest, LogsTheErrorsOfWhoeverDoesNotAskForThem) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  const LogCapture log;
  {
    const KyAhead ahead(desktop, {}, kSet);
    desktop->call("Keeper", "set", {-1});
  }
  EXPECT_EQ(log.lines("ky"), Lines{"error ahead: Keeper.set: no number below zero"});
}

TEST_F(AheadTest, AsksAgainForWhatAWriteChanges) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  const auto changed = [this](const KyValue::Array&) { return kGet; };
  const KyAhead ahead(desktop, {kGet}, {{"Keeper", "set", changed}});
  EXPECT_EQ(get(desktop), 7);
  desktop->call("Keeper", "set", {8});
  EXPECT_EQ(get(desktop), 8);
  desktop->call("Keeper", "set", {9});
  desktop->call("Keeper", "set", {10});
  EXPECT_EQ(get(desktop), 10);
}

TEST_F(AheadTest, LooksIntoTheInnerScopeFirst) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  const KyAhead outer(desktop, {kGet});
  EXPECT_EQ(get(desktop), 7);
  number = 8;
  {
    const KyAhead inner(desktop, {kGet});
    EXPECT_EQ(get(desktop), 8);
  }
  EXPECT_EQ(get(desktop), 7);
}

TEST_F(AheadTest, EndsWithTheConnection) {
  addKeeper(robot);
  const auto desktop = robot.connect();
  open = false;
  KyAhead ahead(desktop, {{"Nobody", "get"}}, kSet);
  desktop->call("Keeper", "set", {1});
  desktop->disconnect();
  EXPECT_EQ(ahead.finish().size(), 1u);
  EXPECT_EQ(errorOf(desktop, kGet), "Keeper.get: the broker is closed");
  open = true;
}

TEST_F(AheadTest, WaitsForAModuleThatHangsNoLongerThanWithout) {
  KyBrokerOptions options;
  options.patience.call = std::chrono::milliseconds(200);
  open = false;
  addKeeper(robot);
  const auto desktop = robot.connect("desktop", options.patience);
  const KyReads reads = {{"Keeper", "set", {1}}, {"Keeper", "set", {2}}, kGet};
  const KyAhead ahead(desktop, reads);
  for (const KyRead& read : reads)
    EXPECT_EQ(errorOf(desktop, read), "Keeper." + read.method + ": no answer within 200 ms");
  const KyAhead later(desktop, {{"Keeper", "other"}});
  EXPECT_EQ(errorOf(desktop, {"Keeper", "other"}).find("Keeper.other: the module has not answered"),
            0u);
  open = true;
}

// SPDX-License-Identifier: Apache-2.0
// One robot, one desktop: the same over TCP and within the process.
#include <gtest/gtest.h>

#include <atomic>
#include <boost/make_shared.hpp>
#include <future>
#include <thread>

#include "error_of_call.h"
#include "ky/module.h"
#include "ky/proxy.h"
#include "support/wait.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

class Calculator : public KyModule {
 public:
  explicit Calculator(boost::shared_ptr<KyBroker> broker, const std::string& name = "Calculator")
      : KyModule(std::move(broker), name) {
    functionName("add", getName(), "Adds.");
    addParam("a", "a number");
    addParam("b", "another");
    setReturn("sum", "of both");
    bindMethod(&Calculator::add);
    functionName("echo", getName(), "Gives back what it gets.");
    addParam("value", "anything");
    bindMethod(&Calculator::echo);
    functionName("fail", getName(), "Fails.");
    addParam("text", "of the error");
    bindMethod(&Calculator::fail);
    functionName("crash", getName(), "Throws what is no KyError.");
    bindMethod(&Calculator::crash);
    functionName("wait", getName(), "Returns when released.");
    bindMethod(&Calculator::wait);
    functionName("callSelf", getName(), "Calls another method of itself through the broker.");
    bindMethod(&Calculator::callSelf);
    functionName("caller", getName(), "The name of the peer who calls.");
    bindMethod(&Calculator::caller);
    functionName("big", getName(), "A binary.");
    addParam("size", "bytes");
    bindMethod(&Calculator::big);
  }

  int add(int a, int b) { return a + b; }
  KyValue echo(const KyValue& value) { return value; }
  void fail(const std::string& text) { throw KyError(text); }
  void crash() { throw std::runtime_error("out of paper"); }
  void wait() { released.get_future().wait(); }
  int callSelf() { return getParentBroker()->getProxy(getName())->call<int>("add", 20, 22); }
  std::string caller(const KyPeer& peer) { return peer.name; }
  KyBinary big(int size) {
    return KyBinary(std::vector<std::uint8_t>(static_cast<std::size_t>(size), 7));
  }

  std::promise<void> released;
};

class BrokerTest : public testing::TestWithParam<const char*> {
 protected:
  BrokerTest() {
    KyBrokerOptions options = place();
    options.name = "robot";
    if (overTcp())
      options.listen = KyAddress{"127.0.0.1", 0};
    else
      options.listenInProcess = "here";
    robot = KyBroker::create(options);
    calculator = KyModule::createModule<Calculator>(robot);
    desktop = connect("desktop");
  }
  ~BrokerTest() override {
    calculator.reset();
    for (const auto& broker : desktops) broker->shutdown();
    robot->shutdown();
  }

  bool overTcp() const { return std::string(GetParam()) == "tcp"; }
  KyBrokerOptions place() const {
    KyBrokerOptions options;
    if (!overTcp()) options.inProcess = inProcess;
    return options;
  }
  boost::shared_ptr<KyBroker> connect(const std::string& name) {
    KyBrokerOptions options = place();
    options.name = name;
    if (overTcp())
      options.parent = robot->address();
    else
      options.parentInProcess = "here";
    desktops.push_back(KyBroker::create(options));
    return desktops.back();
  }

  boost::shared_ptr<KyInProcess> inProcess = boost::make_shared<KyInProcess>();
  boost::shared_ptr<KyBroker> robot;
  boost::shared_ptr<Calculator> calculator;
  std::vector<boost::shared_ptr<KyBroker>> desktops;
  boost::shared_ptr<KyBroker> desktop;
};

INSTANTIATE_TEST_SUITE_P(Transport, BrokerTest, testing::Values("tcp", "process"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(BrokerTest, CallsAModuleOfTheRobot) {
  const auto proxy = desktop->getProxy("Calculator");
  EXPECT_EQ(proxy->call<int>("add", 2, 3), 5);
  EXPECT_EQ(robot->getProxy("Calculator")->call<int>("add", 2, 3), 5);
}

TEST_P(BrokerTest, CarriesEveryTypeOfValueThereAndBack) {
  const KyValue value = KyValue::array(
      {KyValue(), true, false, -1, 1LL << 62, 0.1, 1e300, "", "text \xff", KyBinary(),
       KyBinary(std::vector<std::uint8_t>(4096, 1)), KyBinary(std::vector<std::uint8_t>(4097, 2)),
       KyValue::array(), KyValue::array({KyValue::array({1, "two"})})});
  EXPECT_EQ(desktop->getProxy("Calculator")->call<KyValue>("echo", value), value);
}

TEST_P(BrokerTest, CarriesALargeBinary) {
  const KyBinary big = desktop->getProxy("Calculator")->call<KyBinary>("big", 5'000'000);
  ASSERT_EQ(big.size(), 5'000'000u);
  EXPECT_EQ(big.data()[4'999'999], 7);
}

TEST_P(BrokerTest, ThrowsTheErrorOfTheMethodAtTheCaller) {
  for (const auto& broker : {desktop, robot}) {
    const auto proxy = broker->getProxy("Calculator");
    EXPECT_EQ(errorOfCall([&] { proxy->callVoid("fail", "no ink"); }), "Calculator.fail: no ink");
    EXPECT_EQ(errorOfCall([&] { proxy->callVoid("crash"); }), "Calculator.crash: out of paper");
  }
}

TEST_P(BrokerTest, SaysWhatIsWrongWithACall) {
  for (const auto& broker : {desktop, robot}) {
    const auto proxy = broker->getProxy("Calculator");
    EXPECT_EQ(errorOfCall([&] { broker->getProxy("Nobody"); }),
              "Nobody: the robot has no module of this name");
    EXPECT_EQ(errorOfCall([&] { broker->getProxy("Nobody", 0)->callVoid("add"); }),
              "Nobody.add: the robot has no module of this name");
    EXPECT_EQ(errorOfCall([&] { proxy->callVoid("divide"); }),
              "Calculator.divide: there is no such method; getMethodList() names all");
    EXPECT_EQ(errorOfCall([&] { proxy->callVoid("add", 1); }),
              "Calculator.add: called with 1 arguments, but it takes 2");
    EXPECT_EQ(errorOfCall([&] { proxy->callVoid("add", 1, "two"); }),
              "Calculator.add: a value of type string can't be read as int");
    EXPECT_EQ(errorOfCall([&] { proxy->call<std::string>("add", 1, 2); }),
              "a value of type int can't be read as string");
  }
}

TEST_P(BrokerTest, RefusesToSendWhatIsTooLarge) {
  const auto proxy = desktop->getProxy("Calculator");
  const std::string tooLong(5u << 20, 'x');
  EXPECT_NE(errorOfCall([&] { proxy->callVoid("echo", tooLong); }).find("too large"),
            std::string::npos);
  EXPECT_NE(errorOfCall([&] { proxy->callVoid("big", 33 << 20); }).find("can't be sent"),
            std::string::npos);
  EXPECT_EQ(proxy->call<int>("add", 1, 1), 2);
}

TEST_P(BrokerTest, GivesUpACallAtItsDeadline) {
  for (const auto& broker : {desktop, robot})
    EXPECT_EQ(errorOfCall([&] { broker->call("Calculator", "wait", {}, 20ms); }),
              "Calculator.wait: no answer within 20 ms");
  calculator->released.set_value();
}

TEST_P(BrokerTest, DropsALateAnswer) {
  EXPECT_NE(errorOfCall([&] { desktop->call("Calculator", "wait", {}, 20ms); }), "no error");
  calculator->released.set_value();
  EXPECT_EQ(desktop->getProxy("Calculator")->call<int>("add", 4, 4), 8);
}

TEST_P(BrokerTest, DoesNotLetASlowModuleHoldUpAnother) {
  KyModule::createModule<Calculator>(robot, "Other");
  auto slow = std::async(std::launch::async, [&] { desktop->call("Calculator", "wait", {}, 20s); });
  EXPECT_EQ(desktop->getProxy("Other")->call<int>("add", 1, 2), 3);
  calculator->released.set_value();
  slow.get();
}

TEST_P(BrokerTest, LetsAMethodCallItsOwnModule) {
  EXPECT_EQ(desktop->getProxy("Calculator")->call<int>("callSelf"), 42);
}

TEST_P(BrokerTest, TellsAMethodWhoCalls) {
  EXPECT_EQ(desktop->getProxy("Calculator")->call<std::string>("caller"), "desktop");
}

TEST_P(BrokerTest, CallsAModuleOfTheDesktopFromTheRobotAndFromAnotherPeer) {
  KyModule::createModule<Calculator>(desktop, "OnDesktop");
  const auto other = connect("other");
  for (const auto& broker : {robot, other, desktop}) {
    EXPECT_TRUE(broker->isModulePresent("OnDesktop"));
    EXPECT_EQ(broker->getProxy("OnDesktop")->call<int>("add", 2, 2), 4);
    EXPECT_EQ(errorOfCall([&] { broker->getProxy("OnDesktop")->callVoid("fail", "oh"); }),
              "OnDesktop.fail: oh");
    const KyValue big(KyBinary(std::vector<std::uint8_t>(100'000, 3)));
    EXPECT_EQ(broker->getProxy("OnDesktop")->call<KyValue>("echo", big), big);
  }
  desktop->unregisterModule("OnDesktop");
  EXPECT_FALSE(other->isModulePresent("OnDesktop"));
}

TEST_P(BrokerTest, NamesAllModulesInReach) {
  KyModule::createModule<Calculator>(desktop, "OnDesktop");
  const std::vector<std::string> names = {"Calculator", "OnDesktop"};
  EXPECT_EQ(desktop->moduleNames(), names);
  EXPECT_EQ(robot->moduleNames(), names);
}

TEST_P(BrokerTest, KeepsAModuleAliveUntilItIsUnregistered) {
  auto module = KyModule::createModule<Calculator>(desktop, "Kept");
  const boost::weak_ptr<Calculator> weak = module;
  module.reset();
  EXPECT_FALSE(weak.expired());
  desktop->unregisterModule("Kept");
  EXPECT_TRUE(weak.expired());
}

TEST_P(BrokerTest, RefusesASecondModuleOfOneName) {
  EXPECT_NE(errorOfCall([&] { KyModule::createModule<Calculator>(robot); }).find("already"),
            std::string::npos);
  // The robot's own modules can't be taken over from outside either.
  EXPECT_NE(errorOfCall([&] { KyModule::createModule<Calculator>(desktop); }).find("of its own"),
            std::string::npos);
}

TEST_P(BrokerTest, SaysThatItIsClosed) {
  desktop->shutdown();
  EXPECT_EQ(desktop->connection(), KyConnection::Closed);
  EXPECT_EQ(errorOfCall([&] { desktop->getProxy("Calculator", 0)->callVoid("add", 1, 2); }),
            "Calculator.add: the broker is closed");
}

TEST_P(BrokerTest, EndsACallInFlightWhenItShutsDown) {
  auto call = std::async(std::launch::async, [&] {
    return errorOfCall([&] { desktop->call("Calculator", "wait", {}, 20s); });
  });
  const auto other = connect("other");
  EXPECT_EQ(other->getProxy("Calculator", 0)->module(), "Calculator");
  desktop->shutdown();
  EXPECT_NE(call.get(), "no error");
  calculator->released.set_value();
}

TEST_P(BrokerTest, CountsWhatGoesOverTheWire) {
  desktop->getProxy("Calculator")->call<KyBinary>("big", 1'000'000);
  EXPECT_GT(desktop->statistics().bytesIn, 1'000'000u);
  // The answer may be here before the robot's thread comes to count it.
  EXPECT_TRUE(waitUntil([&] { return robot->statistics().bytesOut > 1'000'000u; }));
  EXPECT_TRUE(waitUntil([&] { return desktop->statistics().roundTrip.count() > 0; }));
}

TEST_P(BrokerTest, StandsManyCallersAtOnce) {
  std::vector<std::future<int>> sums;
  for (int caller = 0; caller < 8; ++caller)
    sums.push_back(std::async(std::launch::async, [&, caller] {
      const auto proxy = (caller % 2 == 0 ? desktop : robot)->getProxy("Calculator");
      int sum = 0;
      for (int i = 0; i < 100; ++i) sum += proxy->call<int>("add", i, caller);
      return sum;
    }));
  for (int caller = 0; caller < 8; ++caller)
    EXPECT_EQ(sums[static_cast<std::size_t>(caller)].get(), 4950 + 100 * caller);
}

}  // namespace

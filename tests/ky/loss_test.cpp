// SPDX-License-Identifier: Apache-2.0
// Peers that fall silent, go and come back.
#include <gtest/gtest.h>

#include <future>
#include <mutex>

#include "error_of_call.h"
#include "ky/module.h"
#include "ky/proxy.h"
#include "raw_peer.h"
#include "support/wait.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

class Counter : public KyModule {
 public:
  explicit Counter(boost::shared_ptr<KyBroker> broker, const std::string& name = "Counter")
      : KyModule(std::move(broker), name) {
    functionName("wait", getName(), "Returns when released.");
    bindMethod(&Counter::wait);
    functionName("one", getName(), "Answers 1.");
    bindMethod(&Counter::one);
  }
  void wait() { released.get_future().wait(); }
  int one() { return 1; }
  void peerLeft(const KyPeer& peer) override {
    const std::lock_guard guard(mutex);
    left.push_back(peer.name);
  }
  std::vector<std::string> whoLeft() {
    const std::lock_guard guard(mutex);
    return left;
  }

  std::promise<void> released;
  std::mutex mutex;
  std::vector<std::string> left;
};

// Every change of a broker's connection, as text.
class Changes {
 public:
  explicit Changes(KyBroker& broker)
      : fListener(broker.onConnection([this](KyConnection connection, const std::string& why) {
          const std::lock_guard guard(fMutex);
          fChanges.push_back(connection == KyConnection::Connected ? "connected" : "lost: " + why);
        })) {}
  std::vector<std::string> list() {
    const std::lock_guard guard(fMutex);
    return fChanges;
  }

 private:
  std::mutex fMutex;
  std::vector<std::string> fChanges;
  std::unique_ptr<KyConnectionListener> fListener;
};

KyBrokerOptions robotOptions(int port = 0) {
  KyBrokerOptions options;
  options.name = "robot";
  options.listen = KyAddress{"127.0.0.1", port};
  return options;
}

KyBrokerOptions desktopOptions(int port) {
  KyBrokerOptions options;
  options.name = "desktop";
  options.parent = KyAddress{"127.0.0.1", port};
  options.patience.reconnectMin = 20ms;
  options.patience.reconnectMax = 100ms;
  return options;
}

TEST(Loss, AWrongPortIsToldAtOnce) {
  const auto robot = KyBroker::create(robotOptions());
  const int port = robot->address().port;
  robot->shutdown();
  EXPECT_EQ(errorOfCall([&] { KyBroker::create(desktopOptions(port)); }),
            "desktop: can't reach the robot at 127.0.0.1:" + std::to_string(port) +
                ": nobody listens there");
}

TEST(Loss, APortThatIsTakenIsTold) {
  const auto robot = KyBroker::create(robotOptions());
  const std::string error =
      errorOfCall([&] { KyBroker::create(robotOptions(robot->address().port)); });
  EXPECT_NE(error.find("is taken"), std::string::npos) << error;
  robot->shutdown();
}

TEST(Loss, ARobotThatStopsIsLostAndFoundAgain) {
  auto robot = KyBroker::create(robotOptions());
  const int port = robot->address().port;
  KyModule::createModule<Counter>(robot);
  const auto desktop = KyBroker::create(desktopOptions(port));
  KyModule::createModule<Counter>(desktop, "OnDesktop");
  Changes changes(*desktop);
  robot->shutdown();
  ASSERT_TRUE(waitUntil([&] { return !changes.list().empty(); }));
  // Its goodbye and the end of its connection may be noticed in either order.
  const std::string lost = changes.list().front();
  EXPECT_TRUE(lost == "lost: it said: the robot stops" || lost == "lost: the connection was closed")
      << lost;
  EXPECT_EQ(desktop->connection(), KyConnection::Lost);
  EXPECT_NE(errorOfCall([&] {
              desktop->getProxy("Counter", 0)->callVoid("one");
            }).find("no connection to the robot"),
            std::string::npos);

  robot = KyBroker::create(robotOptions(port));
  KyModule::createModule<Counter>(robot);
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Connected; }));
  EXPECT_EQ(changes.list().back(), "connected");
  EXPECT_EQ(desktop->getProxy("Counter")->call<int>("one"), 1);
  // Its modules are known to the new robot too.
  EXPECT_EQ(robot->getProxy("OnDesktop")->call<int>("one"), 1);
  desktop->shutdown();
  robot->shutdown();
}

TEST(Loss, ACallInFlightFailsWhenTheRobotIsLost) {
  auto robot = KyBroker::create(robotOptions());
  const auto counter = KyModule::createModule<Counter>(robot);
  const auto desktop = KyBroker::create(desktopOptions(robot->address().port));
  auto call = std::async(std::launch::async, [&] {
    return errorOfCall([&] { desktop->call("Counter", "wait", {}, 60s); });
  });
  auto stop = std::async(std::launch::async, [&] { robot->shutdown(); });
  counter->released.set_value();
  stop.get();
  // Either the answer was still in time, or the loss ended the call.
  const std::string outcome = call.get();
  EXPECT_TRUE(outcome == "no error" || outcome.find("robot") != std::string::npos ||
              outcome.find("going") != std::string::npos)
      << outcome;
  desktop->shutdown();
}

TEST(Loss, ConnectingLaterFindsARobotThatStartsLater) {
  auto robot = KyBroker::create(robotOptions());
  const int port = robot->address().port;
  robot->shutdown();
  KyBrokerOptions options = desktopOptions(port);
  options.connectLater = true;
  const auto desktop = KyBroker::create(options);
  EXPECT_EQ(desktop->connection(), KyConnection::Connecting);
  Changes changes(*desktop);
  robot = KyBroker::create(robotOptions(port));
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Connected; }));
  EXPECT_TRUE(waitUntil([&] { return changes.list() == std::vector<std::string>{"connected"}; }));
  desktop->shutdown();
  robot->shutdown();
}

// A robot that welcomes its first peer and never says anything again.
class SilentRobot {
 public:
  SilentRobot() {
    fSocket.set(zmq::sockopt::linger, 0);
    fSocket.set(zmq::sockopt::rcvtimeo, 10'000);
    fSocket.bind("tcp://127.0.0.1:*");
    const std::string endpoint = fSocket.get(zmq::sockopt::last_endpoint);
    fPort = std::stoi(endpoint.substr(endpoint.rfind(':') + 1));
  }
  int port() const { return fPort; }
  void welcomeOne() {
    zmq::message_t route;
    zmq::message_t hello;
    ASSERT_TRUE(fSocket.recv(route));
    ASSERT_TRUE(fSocket.recv(hello));
    fSocket.send(route, zmq::send_flags::sndmore);
    fSocket.send(zmq::buffer(encode(welcomeMessage("silent"), {}).text));
  }

 private:
  zmq::context_t fContext;
  zmq::socket_t fSocket{fContext, zmq::socket_type::router};
  int fPort = 0;
};

TEST(Loss, ARobotThatFallsSilentIsLostAndItsCallsFail) {
  SilentRobot robot;
  auto welcome = std::async(std::launch::async, [&] { robot.welcomeOne(); });
  KyBrokerOptions options = desktopOptions(robot.port());
  options.patience.silence = 300ms;
  options.patience.heartbeat = 50ms;
  const auto desktop = KyBroker::create(options);
  welcome.get();
  EXPECT_NE(errorOfCall([&] {
              desktop->call("Any", "method", {}, 60s);
            }).find("no sign of life for 0.3 s"),
            std::string::npos);
  EXPECT_EQ(desktop->connection(), KyConnection::Lost);
  desktop->shutdown();
}

TEST(Loss, ARobotThatNeverAnswersIsToldAfterTheConnectTime) {
  SilentRobot robot;
  KyBrokerOptions options = desktopOptions(robot.port());
  options.patience.connect = 100ms;
  EXPECT_NE(errorOfCall([&] { KyBroker::create(options); }).find("no answer"), std::string::npos);
}

TEST(Loss, APeerThatFallsSilentIsDroppedAndTheModulesAreTold) {
  KyBrokerOptions options = robotOptions();
  options.patience.silence = 300ms;
  const auto robot = KyBroker::create(options);
  const auto counter = KyModule::createModule<Counter>(robot);
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join("silent", {"Remote"}));
  EXPECT_TRUE(robot->isModulePresent("Remote"));
  EXPECT_NE(errorOfCall([&] { robot->call("Remote", "any", {}, 60s); }).find("no sign of life"),
            std::string::npos);
  EXPECT_FALSE(robot->isModulePresent("Remote"));
  EXPECT_TRUE(waitUntil([&] { return counter->whoLeft() == std::vector<std::string>{"raw"}; }));
  robot->shutdown();
}

TEST(Loss, APeerThatComesBackOverANewConnectionIsStillTheSame) {
  const auto robot = KyBroker::create(robotOptions());
  const auto counter = KyModule::createModule<Counter>(robot);
  {
    RawPeer before(robot->address());
    ASSERT_TRUE(before.join("same", {"Remote"}));
  }
  RawPeer after(robot->address());
  ASSERT_TRUE(after.join("same", {"Remote"}));
  after.send(pingMessage(1));
  ASSERT_TRUE(after.receive());
  EXPECT_TRUE(robot->isModulePresent("Remote"));
  EXPECT_TRUE(counter->whoLeft().empty());
  robot->shutdown();
}

TEST(Loss, AForwardedCallFailsWhenItsCalleeLeaves) {
  const auto robot = KyBroker::create(robotOptions());
  const auto desktop = KyBroker::create(desktopOptions(robot->address().port));
  RawPeer callee(robot->address());
  ASSERT_TRUE(callee.join("callee", {"Remote"}));
  auto call = std::async(std::launch::async, [&] {
    return errorOfCall([&] { desktop->call("Remote", "any", {}, 60s); });
  });
  ASSERT_TRUE(callee.receive());
  callee.send(byeMessage("enough"));
  EXPECT_NE(call.get().find("it said goodbye"), std::string::npos);
  desktop->shutdown();
  robot->shutdown();
}

}  // namespace

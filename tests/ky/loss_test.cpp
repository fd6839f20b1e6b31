// SPDX-License-Identifier: Apache-2.0
// Peers that fall silent, go and come back.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <future>
#include <mutex>

#include "error_of_call.h"
#include "ky/module.h"
#include "ky/proxy.h"
#include "raw_peer.h"
#include "raw_robot.h"
#include "support/log_capture.h"
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
          fChanges.push_back(connection == KyConnection::Connected ? "connected"
                             : connection == KyConnection::Silent  ? "silent: " + why
                                                                   : "lost: " + why);
        })) {}
  std::vector<std::string> list() {
    const std::lock_guard guard(fMutex);
    return fChanges;
  }
  // Without the connection that create() has waited for, and of which the news may come later.
  std::vector<std::string> listAfterCreation() {
    auto changes = list();
    if (!changes.empty() && changes.front() == "connected") changes.erase(changes.begin());
    return changes;
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

TEST(Loss, ANameThatNoComputerHasIsTold) {
  KyBrokerOptions options = desktopOptions(9559);
  // Longer than a name may be, so that no name server is waited for.
  options.parent->host = std::string(70, 'x');
  const std::string error = errorOfCall([&] { KyBroker::create(options); });
  EXPECT_NE(error.find("xx:9559: no computer of this name is found"), std::string::npos) << error;
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
  ASSERT_TRUE(waitUntil([&] { return !changes.listAfterCreation().empty(); }));
  EXPECT_EQ(changes.listAfterCreation().front(), "lost: it said: the robot stops");
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

TEST(Loss, AGoodbyeIsNoWarning) {
  LogCapture log;
  const auto robot = KyBroker::create(robotOptions());
  const auto desktop = KyBroker::create(desktopOptions(robot->address().port));
  robot->shutdown();
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Lost; }));
  desktop->shutdown();
  EXPECT_EQ(log.lines("ky"),
            std::vector<std::string>{"info lose: lost the robot at " + robot->address().toString() +
                                     ": it said: the robot stops"});
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

// A desktop that notices silence soon.
KyBrokerOptions impatientOptions(int port) {
  KyBrokerOptions options = desktopOptions(port);
  options.patience.silence = 300ms;
  options.patience.heartbeat = 50ms;
  return options;
}

TEST(Loss, CallsToARobotThatFallsSilentFailAndItIsGivenUpLater) {
  RawRobot robot;  // says nothing but welcome
  auto welcome = std::async(std::launch::async, [&] { robot.welcomeOne(); });
  KyBrokerOptions options = impatientOptions(robot.port());
  options.patience.keep = 900ms;
  const auto desktop = KyBroker::create(options);
  Changes changes(*desktop);
  welcome.get();
  EXPECT_NE(errorOfCall([&] {
              desktop->call("Any", "method", {}, 60s);
            }).find("no sign of life for 0.3 s"),
            std::string::npos);
  EXPECT_NE(errorOfCall([&] {
              desktop->call("Any", "method", {}, 60s);
            }).find("no connection to the robot"),
            std::string::npos);
  ASSERT_TRUE(waitUntil([&] { return changes.listAfterCreation().size() == 2; }));
  EXPECT_EQ(changes.listAfterCreation(),
            (std::vector<std::string>{"silent: no sign of life for 0.3 s",
                                      "lost: no sign of life for 0.9 s"}));
  EXPECT_EQ(desktop->connection(), KyConnection::Lost);
  desktop->shutdown();
}

TEST(Loss, ARobotThatSpeaksAgainInTimeHasOnlyBeenSilent) {
  RawRobot robot;  // says nothing but welcome
  auto welcome = std::async(std::launch::async, [&] { return robot.welcomeOne(); });
  const auto desktop = KyBroker::create(impatientOptions(robot.port()));
  Changes changes(*desktop);
  const std::string id = welcome.get();
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Silent; }));
  EXPECT_EQ(robot.welcomeOne(true), id);
  ASSERT_TRUE(waitUntil([&] { return changes.listAfterCreation().size() == 2; }));
  EXPECT_EQ(changes.listAfterCreation().back(), "connected");
  desktop->shutdown();
}

TEST(Loss, ARobotThatDoesNotKnowItsPeerAnyMoreIsLost) {
  RawRobot robot;  // says nothing but welcome
  auto welcome = std::async(std::launch::async, [&] { return robot.welcomeOne(); });
  const auto desktop = KyBroker::create(impatientOptions(robot.port()));
  Changes changes(*desktop);
  welcome.get();
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Silent; }));
  robot.welcomeOne(false);
  ASSERT_TRUE(waitUntil([&] { return changes.listAfterCreation().size() >= 3; }));
  EXPECT_EQ(changes.listAfterCreation()[1], "lost: it was restarted");
  EXPECT_EQ(changes.listAfterCreation()[2], "connected");
  desktop->shutdown();
}

TEST(Loss, ARobotThatForgetsItsPeerWarns) {
  LogCapture log;
  RawRobot robot;  // says nothing but welcome
  auto told = std::async(std::launch::async, [&] { robot.welcomeOneAndForgetIt(); });
  const auto desktop = KyBroker::create(impatientOptions(robot.port()));
  told.get();
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Lost; }));
  desktop->shutdown();
  EXPECT_EQ(log.lines("ky"),
            std::vector<std::string>{"warning lose: lost the robot at 127.0.0.1:" +
                                     std::to_string(robot.port()) + ": it said: say hello first"});
}

TEST(Loss, APeerThatIsGivenUpComesBackUnderANewId) {
  RawRobot robot;  // says nothing but welcome
  auto welcome = std::async(std::launch::async, [&] { return robot.welcomeOne(); });
  KyBrokerOptions options = impatientOptions(robot.port());
  options.patience.keep = 400ms;
  const auto desktop = KyBroker::create(options);
  const std::string id = welcome.get();
  ASSERT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Lost; }));
  std::string next = robot.welcomeOne();
  // What it said before it gave up may still be waiting.
  for (int i = 0; next == id && i < 20; ++i) next = robot.welcomeOne();
  EXPECT_NE(next, id);
  EXPECT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Connected; }));
  desktop->shutdown();
}

// Who could not listen blames nobody: a thread that stood still, a laptop that was suspended.
TEST(Loss, WhoWasNotRunningHimselfListensAgainFirst) {
  const auto robot = KyBroker::create(robotOptions());
  KyModule::createModule<Counter>(robot);
  KyBrokerOptions options = impatientOptions(robot->address().port);
  options.connectLater = true;
  const auto desktop = KyBroker::create(options);
  std::promise<void> release;
  std::atomic<int> changes = 0;
  const auto holdsTheIoThread = desktop->onConnection([&](KyConnection, const std::string&) {
    if (++changes == 1) release.get_future().wait();
  });
  ASSERT_TRUE(waitUntil([&] { return changes == 1; }));
  EXPECT_FALSE(waitUntil([&] { return changes > 1; }, 3 * options.patience.silence));
  release.set_value();
  EXPECT_EQ(desktop->call("Counter", "one", {}).asInt(), 1);
  EXPECT_EQ(changes, 1);
  desktop->shutdown();
  robot->shutdown();
}

TEST(Loss, ADisconnectedBrokersModulesCanNotReachTheRobotAnyMore) {
  const auto robot = KyBroker::create(robotOptions());
  KyModule::createModule<Counter>(robot);
  const auto desktop = KyBroker::create(desktopOptions(robot->address().port));
  const auto module = KyModule::createModule<Counter>(desktop, "OnDesktop");
  desktop->disconnect();
  EXPECT_EQ(desktop->connection(), KyConnection::Closed);
  EXPECT_NE(errorOfCall([&] { desktop->call("Counter", "one", {}); }).find("closed"),
            std::string::npos);
  EXPECT_EQ(module->one(), 1) << "it lives on";
  EXPECT_TRUE(waitUntil([&] { return !robot->isModulePresent("OnDesktop"); }));
  desktop->shutdown();
  robot->shutdown();
}

// Accepts one connection, greets with a mechanism that there is not, and hangs up.
void garbleOneHandshake(int listening) {
  const int connection = ::accept(listening, nullptr, nullptr);
  std::string greeting(64, '\0');
  greeting[0] = '\xFF';
  greeting[9] = '\x7F';
  greeting[10] = 3;
  greeting.replace(12, 5, "BOGUS");
  [[maybe_unused]] const auto sent =
      ::send(connection, greeting.data(), greeting.size(), MSG_NOSIGNAL);
  ::shutdown(connection, SHUT_WR);
  char rest[256];
  while (::recv(connection, rest, sizeof rest, 0) > 0) {
  }
  ::close(connection);
  ::close(listening);
}

TEST(Loss, AGarbledHandshakeIsTriedAgainOnANewSocket) {
  const int listening = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  ::setsockopt(listening, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_EQ(::bind(listening, reinterpret_cast<sockaddr*>(&address), size), 0);
  ASSERT_EQ(::listen(listening, 1), 0);
  ::getsockname(listening, reinterpret_cast<sockaddr*>(&address), &size);
  auto garbled = std::async(std::launch::async, garbleOneHandshake, listening);
  const int port = ntohs(address.sin_port);
  KyBrokerOptions options = desktopOptions(port);
  options.connectLater = true;
  const auto desktop = KyBroker::create(options);
  garbled.get();
  const auto robot = KyBroker::create(robotOptions(port));
  EXPECT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Connected; }));
  desktop->shutdown();
  robot->shutdown();
}

TEST(Loss, ARobotThatNeverAnswersIsToldAfterTheConnectTime) {
  RawRobot robot;  // says nothing but welcome
  KyBrokerOptions options = desktopOptions(robot.port());
  options.patience.connect = 100ms;
  EXPECT_NE(errorOfCall([&] { KyBroker::create(options); }).find("no answer"), std::string::npos);
}

TEST(Loss, APeerThatFallsSilentKeepsWhatBelongsToIt) {
  KyBrokerOptions options = robotOptions();
  options.patience.silence = 300ms;
  const auto robot = KyBroker::create(options);
  const auto counter = KyModule::createModule<Counter>(robot);
  const auto other = KyBroker::create(desktopOptions(robot->address().port));
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join("silent", {"Remote"}));
  EXPECT_NE(errorOfCall([&] { robot->call("Remote", "any", {}, 60s); }).find("is silent"),
            std::string::npos);
  EXPECT_NE(errorOfCall([&] { robot->call("Remote", "any", {}, 60s); }).find("is silent"),
            std::string::npos);
  EXPECT_NE(errorOfCall([&] { other->call("Remote", "any", {}, 60s); }).find("is silent"),
            std::string::npos);
  EXPECT_TRUE(robot->isModulePresent("Remote"));
  EXPECT_TRUE(counter->whoLeft().empty());
  // It speaks again, and is called again.
  ASSERT_EQ(peer.receive()->kind, MessageKind::Call);
  peer.send(pingMessage(1));
  ASSERT_EQ(peer.receive()->kind, MessageKind::Pong);
  auto call = std::async(std::launch::async, [&] {
    return errorOfCall([&] { robot->call("Remote", "any", {}, 60s); });
  });
  const auto received = peer.receive();
  ASSERT_EQ(received->kind, MessageKind::Call);
  peer.send(resultMessage(received->id(), 7));
  EXPECT_EQ(call.get(), "no error");
  other->shutdown();
  robot->shutdown();
}

TEST(Loss, APeerThatStaysSilentIsDroppedAndTheModulesAreTold) {
  KyBrokerOptions options = robotOptions();
  options.patience.silence = 300ms;
  options.patience.keep = 600ms;
  const auto robot = KyBroker::create(options);
  const auto counter = KyModule::createModule<Counter>(robot);
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join("silent", {"Remote"}));
  EXPECT_TRUE(robot->isModulePresent("Remote"));
  EXPECT_NE(errorOfCall([&] { robot->call("Remote", "any", {}, 60s); }).find("no sign of life"),
            std::string::npos);
  EXPECT_TRUE(waitUntil([&] { return !robot->isModulePresent("Remote"); }));
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
  after.send(helloMessage("same", "raw", {"Remote"}));
  EXPECT_TRUE(after.receive()->fields[2].asBool()) << "the robot says that it knows it";
  after.send(pingMessage(1));
  ASSERT_TRUE(after.receive());
  EXPECT_TRUE(robot->isModulePresent("Remote"));
  EXPECT_TRUE(counter->whoLeft().empty());
  robot->shutdown();
}

TEST(Loss, AStrangerIsNotKnown) {
  const auto robot = KyBroker::create(robotOptions());
  RawPeer peer(robot->address());
  peer.send(helloMessage("stranger", "raw", {}));
  EXPECT_FALSE(peer.receive()->fields[2].asBool());
  peer.send(helloMessage("stranger", "raw", {}));
  EXPECT_TRUE(peer.receive()->fields[2].asBool());
  robot->shutdown();
}

TEST(Loss, AModuleThatAPeerDoesNotNameAgainIsGone) {
  const auto robot = KyBroker::create(robotOptions());
  RawPeer before(robot->address());
  ASSERT_TRUE(before.join("same", {"Remote", "Other"}));
  RawPeer after(robot->address());
  ASSERT_TRUE(after.join("same", {"Other"}));
  EXPECT_FALSE(robot->isModulePresent("Remote"));
  EXPECT_TRUE(robot->isModulePresent("Other"));
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

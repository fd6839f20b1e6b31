// SPDX-License-Identifier: Apache-2.0
// What strangers and broken programs send must not disturb a robot.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <random>

#include "ky/module.h"
#include "ky/proxy.h"
#include "raw_peer.h"
#include "support/log_capture.h"
#include "support/wait.h"

using namespace Ky;

namespace {

class Echo : public KyModule {
 public:
  explicit Echo(boost::shared_ptr<KyBroker> broker) : KyModule(std::move(broker), "Echo") {
    functionName("echo", getName(), "Gives back what it gets.");
    addParam("value", "anything");
    bindMethod(&Echo::echo);
  }
  KyValue echo(const KyValue& value) { return value; }
};

class HostilePeer : public testing::Test {
 protected:
  HostilePeer() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
    KyModule::createModule<Echo>(robot);
  }
  ~HostilePeer() override { robot->shutdown(); }

  // A well-behaved peer is served.
  bool robotAnswers() {
    KyBrokerOptions options;
    options.name = "friend";
    options.parent = robot->address();
    const auto peer = KyBroker::create(options);
    const bool answered = peer->getProxy("Echo")->call<int>("echo", 7) == 7;
    peer->shutdown();
    return answered;
  }

  boost::shared_ptr<KyBroker> robot;
};

std::string packedArray(std::initializer_list<unsigned char> bytes) {
  return {bytes.begin(), bytes.end()};
}

TEST_F(HostilePeer, GarbageOnThePortDisturbsNobody) {
  std::mt19937 random(1);
  for (int round = 0; round < 20; ++round) {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<std::uint16_t>(robot->address().port));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(::connect(fd, reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
    std::string garbage(1000, '\0');
    for (char& c : garbage) c = static_cast<char>(random());
    [[maybe_unused]] const auto sent = ::send(fd, garbage.data(), garbage.size(), MSG_NOSIGNAL);
    ::close(fd);
  }
  EXPECT_TRUE(robotAnswers());
}

TEST_F(HostilePeer, MalformedMessagesAreDroppedWithALine) {
  const std::string tooDeep(100, '\x91');
  const std::string hugeArray = packedArray({0xdd, 0xff, 0xff, 0xff, 0xff});
  const std::vector<std::string> messages = {
      "",
      "no message at all",
      tooDeep,
      hugeArray,
      packedArray({0x90}),                                      // no kind
      packedArray({0x91, 0x63}),                                // an unknown kind
      packedArray({0x91, 0x01}),                                // too few fields
      packedArray({0x92, 0x06, 0xa1, 'x'}),                     // a field of another type
      packedArray({0x92, 0x06, 0x01, 0x00}),                    // bytes behind the end
      packedArray({0x92, 0x08, 0x81}),                          // a map
      packedArray({0x93, 0x04, 0x01, 0xd6, 0x01, 0, 0, 0, 9}),  // an attachment that is not there
  };
  LogCapture log;
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  for (const std::string& message : messages) peer.sendText(message);
  peer.send(pingMessage(1));
  const auto answer = peer.receive();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->kind, MessageKind::Pong);
  int dropped = 0;
  for (const std::string& line : log.lines("ky"))
    if (line.starts_with("warning receive: dropped a message: ")) ++dropped;
  EXPECT_EQ(dropped, static_cast<int>(messages.size()));
  EXPECT_TRUE(robotAnswers());
}

TEST_F(HostilePeer, ACallThatCanNotBeReadIsAnsweredWithAnError) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  const struct {
    const char* what;
    std::string text;
    const char* error;
  } kCalls[] = {
      {"too few fields", packedArray({0x92, 3, 41}), "with 1 fields instead of 5"},
      {"a field of another type", packedArray({0x96, 3, 41, 0xA1, 'm', 0xA1, 'f', 0xA1, 'x', 100}),
       "field 4 of a message of kind 3 is no array"},
      {"a map", packedArray({0x96, 3, 41, 0xA1, 'm', 0xA1, 'f', 0x91, 0x80, 100}), "a map"},
      {"an end that is missing", packedArray({0x96, 3, 41, 0xA1, 'm', 0xA1}), "cut off"},
  };
  for (const auto& call : kCalls) {
    peer.sendText(call.text);
    const auto answer = peer.receive();
    ASSERT_TRUE(answer) << call.what;
    ASSERT_EQ(answer->kind, MessageKind::Error) << call.what;
    EXPECT_EQ(answer->id(), 41) << call.what;
    EXPECT_NE(answer->fields[3].asString().find(call.error), std::string::npos)
        << answer->fields[3].asString();
  }
}

TEST_F(HostilePeer, MutatedMessagesDisturbNobody) {
  std::mt19937 random(2);
  const std::string good =
      encode(callMessage(1, "Echo", "echo", {KyValue::array({1, 2.5, "three", true})},
                         std::chrono::seconds(1)),
             {})
          .text;
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  for (int round = 0; round < 3000; ++round) {
    std::string bad = good;
    for (int change = 0; change < 3; ++change)
      bad[random() % bad.size()] = static_cast<char>(random());
    bad.resize(random() % bad.size() + 1);
    peer.sendText(bad);
  }
  EXPECT_TRUE(robotAnswers());
}

TEST_F(HostilePeer, AMessageBeyondTheSizeLimitCostsThePeerItsConnection) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  peer.socket().send(zmq::message_t(40u << 20), zmq::send_flags::none);
  // Back on a new connection, on which nobody said hello.
  std::optional<Message> answer;
  EXPECT_TRUE(waitUntil([&] {
    peer.send(pingMessage(1));
    answer = peer.receive();
    return answer && answer->kind == MessageKind::Bye;
  }));
  EXPECT_TRUE(robotAnswers());
}

TEST_F(HostilePeer, ManyPartsAreDropped) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  for (int part = 0; part < 1000; ++part)
    peer.socket().send(zmq::str_buffer("part"), zmq::send_flags::sndmore);
  peer.socket().send(zmq::str_buffer("last"));
  EXPECT_TRUE(robotAnswers());
}

TEST_F(HostilePeer, AnAnswerToSomebodyElsesCallIsDropped) {
  RawPeer callee(robot->address());
  ASSERT_TRUE(callee.join("callee", {"Remote"}));
  RawPeer liar(robot->address());
  ASSERT_TRUE(liar.join("liar"));
  RawPeer caller(robot->address());
  ASSERT_TRUE(caller.join("caller"));
  caller.send(callMessage(5, "Remote", "any", {}, std::chrono::seconds(10)));
  const auto call = callee.receive();
  ASSERT_TRUE(call);
  liar.send(resultMessage(call->id(), "lie"));
  liar.send(pingMessage(1));
  ASSERT_TRUE(liar.receive());
  callee.send(resultMessage(call->id(), "truth"));
  const auto answer = caller.receive();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->id(), 5);
  EXPECT_EQ(answer->fields[1], KyValue("truth"));
}

TEST_F(HostilePeer, AHelloOfAnotherVersionIsTurnedAway) {
  RawPeer peer(robot->address());
  Message hello = helloMessage("raw", "raw", {});
  hello.fields[0] = 99;
  peer.send(hello);
  const auto answer = peer.receive();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->kind, MessageKind::Bye);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// What peers and robots do to streams, against all rules, must not disturb others.
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <limits>

#include "ky/module.h"
#include "ky/proxy.h"
#include "raw_peer.h"
#include "raw_robot.h"
#include "support/wait.h"
#include "zu/mutex.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
constexpr auto kMost = std::numeric_limits<std::int64_t>::max();

// Keeps all streams that anybody has opened.
class Hoard : public KyModule {
 public:
  explicit Hoard(boost::shared_ptr<KyBroker> broker) : KyModule(std::move(broker), "Hoard") {
    functionName("open", getName(), "Streams to the caller.");
    addParam("stream", "its id");
    bindMethod(&Hoard::open);
  }
  void open(const KyPeer& caller, std::int64_t stream) {
    auto sender = getParentBroker()->sendStream(caller, stream);
    const zu::MutexLock guard(fMutex);
    fSenders.push_back(std::move(sender));
  }
  std::vector<std::shared_ptr<KyStreamSender>> senders() {
    const zu::MutexLock guard(fMutex);
    return fSenders;
  }
  std::ptrdiff_t openOnes() {
    const auto all = senders();
    return std::count_if(all.begin(), all.end(), [](const auto& one) { return !one->isClosed(); });
  }
  void stop() override {
    const zu::MutexLock guard(fMutex);
    fSenders.clear();
  }

 private:
  zu::Mutex fMutex;
  std::vector<std::shared_ptr<KyStreamSender>> fSenders ZU_GUARDED_BY(fMutex);
};

class HostileStreams : public testing::Test {
 protected:
  HostileStreams() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
    hoard = KyModule::createModule<Hoard>(robot);
  }
  ~HostileStreams() override {
    hoard.reset();
    robot->shutdown();
  }

  // Whether all were answered. `refused`: the ends that came with the answers.
  static bool open(RawPeer& peer, std::int64_t first, int count = 1,
                   std::vector<Message>* refused = nullptr) {
    for (int i = 0; i < count; ++i)
      peer.send(callMessage(i, "Hoard", "open", {first + i}, 10'000ms));
    for (int answered = 0; answered < count;) {
      auto answer = peer.receive();
      if (!answer) return false;
      if (answer->kind == MessageKind::Result)
        ++answered;
      else if (refused != nullptr && answer->kind == MessageKind::End)
        refused->push_back(std::move(*answer));
      else
        return false;
    }
    return true;
  }
  // Sends on the newest stream. Nothing when the next that comes is something else.
  std::optional<KyValue> valueOver(RawPeer& peer, const KyValue& value) const {
    hoard->senders().back()->send(value);
    const auto item = peer.receive();
    if (!item || item->kind != MessageKind::Item) return std::nullopt;
    return item->fields[2];
  }
  bool hasRead(RawPeer& peer) const {
    peer.send(pingMessage(77));
    const auto answer = peer.receive();
    return answer && answer->kind == MessageKind::Pong && answer->id() == 77;
  }

  boost::shared_ptr<KyBroker> robot;
  boost::shared_ptr<Hoard> hoard;
};

TEST_F(HostileStreams, OfOnePeerAreOpenNoMoreThan64) {
  RawPeer greedy(robot->address());
  ASSERT_TRUE(greedy.join("greedy"));
  std::vector<Message> refused;
  for (int first = 1; first < 10'000; first += 50) ASSERT_TRUE(open(greedy, first, 50, &refused));
  EXPECT_TRUE(waitUntil([&] { return hoard->openOnes() == 64; })) << hoard->openOnes();
  ASSERT_EQ(refused.size(), 10'000U - 64) << "each is told once";
  EXPECT_EQ(refused.front().id(), 65);
  EXPECT_EQ(refused.back().id(), 10'000);
  RawPeer modest(robot->address());
  ASSERT_TRUE(modest.join("modest"));
  ASSERT_TRUE(open(modest, 1));
  EXPECT_EQ(valueOver(modest, 7), KyValue(7)) << "another peer has its own";
}

TEST_F(HostileStreams, ThatWasRefusedSaysWhatToDo) {
  KyBrokerOptions options;
  options.name = "desktop";
  options.parent = robot->address();
  const auto desktop = KyBroker::create(options);
  const auto open = [&] {
    auto stream = desktop->receiveStream();
    desktop->call("Hoard", "open", {stream->id()});
    return stream;
  };
  std::vector<std::unique_ptr<KyStreamReceiver>> streams;
  for (int i = 0; i < 64; ++i) streams.push_back(open());
  const auto refused = open();
  EXPECT_FALSE(refused->next(10s));
  EXPECT_EQ(refused->ended(), "too many streams are open; close one first");
  streams.pop_back();
  const auto next = open();
  hoard->senders().back()->send("room");
  const auto item = next->next(10s);
  ASSERT_TRUE(item);
  EXPECT_EQ(item->value, KyValue("room"));
  EXPECT_EQ(streams.front()->ended(), "");
  desktop->shutdown();
}

TEST_F(HostileStreams, OneThatIsClosedOrOpenedAgainMakesRoomForTheNext) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  ASSERT_TRUE(open(peer, 1, 64));
  ASSERT_TRUE(open(peer, 64));
  EXPECT_EQ(valueOver(peer, "again"), KyValue("again"));
  EXPECT_TRUE(hoard->senders()[63]->isClosed());
  peer.send(closeMessage(5));
  ASSERT_TRUE(hasRead(peer));
  ASSERT_TRUE(open(peer, 1000));
  EXPECT_EQ(valueOver(peer, "new"), KyValue("new"));
  EXPECT_EQ(hoard->openOnes(), 64);
}

TEST_F(HostileStreams, APeerThatLeavesWithoutClosingThemLeavesNoneOpen) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  ASSERT_TRUE(open(peer, -32, 64));
  ASSERT_EQ(hoard->openOnes(), 64);
  peer.send(byeMessage("done"));
  EXPECT_TRUE(waitUntil([&] { return hoard->openOnes() == 0; }));
}

TEST_F(HostileStreams, AnyIdWillDo) {
  for (const std::int64_t id : {kLeast, std::int64_t{-1}, std::int64_t{0}, kMost}) {
    RawPeer before(robot->address());
    const std::string name = "peer " + std::to_string(id);
    ASSERT_TRUE(before.join(name));
    ASSERT_TRUE(open(before, id));
    EXPECT_EQ(valueOver(before, "here"), KyValue("here")) << id;
    RawPeer after(robot->address());
    ASSERT_TRUE(after.join(name));
    EXPECT_TRUE(waitUntil([&] { return hoard->senders().back()->lost() == 1; })) << id;
    EXPECT_EQ(valueOver(after, "there"), KyValue("there")) << id;
  }
}

TEST_F(HostileStreams, WhatIsSaidOfStreamsThatNobodyOpenedIsIgnored) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  ASSERT_TRUE(open(peer, 5));
  for (const std::int64_t id :
       {kLeast, std::int64_t{-1}, std::int64_t{0}, std::int64_t{6}, kMost}) {
    peer.send(closeMessage(id));
    peer.send(itemMessage(id, 1, "from below"));
    peer.send(endMessage(id, "from below"));
  }
  peer.send(itemMessage(5, 1, "from below"));
  peer.send(endMessage(5, "from below"));
  ASSERT_TRUE(hasRead(peer));
  EXPECT_EQ(valueOver(peer, 7), KyValue(7));
}

TEST_F(HostileStreams, AcknowledgementsOfWhatWasNeverSentAreIgnored) {
  RawPeer peer(robot->address());
  ASSERT_TRUE(peer.join());
  ASSERT_TRUE(open(peer, 5));
  peer.readPieces();
  const KyBinary large(std::vector<std::uint8_t>(100'000));
  for (const std::int64_t bytes : {kLeast, std::int64_t{0}, std::int64_t{1}, kMost})
    peer.send({MessageKind::Received, {bytes}});
  ASSERT_TRUE(hasRead(peer));
  const auto sender = hoard->senders().back();
  sender->send(large);
  const auto first = peer.receive();
  ASSERT_TRUE(first);
  EXPECT_EQ(first->kind, MessageKind::Piece);
  for (const std::int64_t bytes : {kMost, std::int64_t{2'000'000}, std::int64_t{-1}, kLeast})
    peer.send({MessageKind::Received, {bytes}});
  // What every link carries comes, and no more.
  std::size_t pieces = 1;
  peer.send(pingMessage(1));
  auto message = peer.receive();
  for (; message && message->kind == MessageKind::Piece && pieces < 100; ++pieces)
    message = peer.receive();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, MessageKind::Pong);
  EXPECT_LE(pieces, 4U);
  EXPECT_EQ(sender->roundTrip().count(), 0);
}

// A desktop of a robot that says whatever it likes.
class HostileRobot : public testing::Test {
 protected:
  HostileRobot() {
    auto welcome = std::async(std::launch::async, [this] { return robot.welcomeOne(); });
    KyBrokerOptions options;
    options.name = "desktop";
    options.parent = KyAddress{"127.0.0.1", robot.port()};
    options.patience.silence = 20s;  // nobody answers its pings
    options.patience.keep = 40s;
    desktop = KyBroker::create(options);
    welcome.get();
    stream = desktop->receiveStream(8);
  }
  ~HostileRobot() override {
    stream.reset();
    desktop->shutdown();
  }

  void say(std::int64_t number, const KyValue& value) {
    robot.say(itemMessage(stream->id(), number, value));
  }
  KyValue next() const {
    const auto item = stream->next(10s);
    return item ? item->value : KyValue("nothing came");
  }

  RawRobot robot;
  boost::shared_ptr<KyBroker> desktop;
  std::unique_ptr<KyStreamReceiver> stream;
};

TEST_F(HostileRobot, ThatSendsForStreamsWhichNobodyOpenedIsNotHeard) {
  for (const std::int64_t id : {kLeast, std::int64_t{-1}, std::int64_t{0}, kMost}) {
    robot.say(itemMessage(id, 1, "stray"));
    robot.say(endMessage(id, "stray"));
    robot.say(closeMessage(id));
  }
  say(1, "own");
  EXPECT_EQ(next(), KyValue("own"));
  EXPECT_EQ(stream->ended(), "");
}

TEST_F(HostileRobot, WhoseNumbersGoBackwardsIsHeardOnceForEach) {
  for (const std::int64_t number : {3, 2, 3, 1, 0, -1}) say(number, number);
  say(kLeast, "least");
  say(4, 4);
  say(kMost, "most");
  say(kMost, "most again");
  say(5, 5);
  robot.say(endMessage(stream->id(), "done"));
  EXPECT_EQ(next(), KyValue(3));
  EXPECT_EQ(next(), KyValue(4));
  EXPECT_EQ(next(), KyValue("most"));
  EXPECT_FALSE(stream->next(10s));
  EXPECT_EQ(stream->ended(), "done");
}

TEST_F(HostileRobot, WhichGoesOnAfterTheEndIsNotHeard) {
  robot.say(endMessage(stream->id(), ""));
  robot.say(endMessage(stream->id(), "once more"));
  say(1, "late");
  auto other = desktop->receiveStream();
  robot.say(itemMessage(other->id(), 1, "other"));
  ASSERT_TRUE(other->next(10s)) << "all before has come";
  EXPECT_FALSE(stream->next(0ms));
  EXPECT_EQ(stream->ended(), "no reason was given");
}

}  // namespace

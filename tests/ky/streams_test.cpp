// SPDX-License-Identifier: Apache-2.0
// Streams from a robot's module to its peers, over real sockets.
#include <gtest/gtest.h>

#include <map>

#include "error_of_call.h"
#include "ky/module.h"
#include "ky/proxy.h"
#include "raw_peer.h"
#include "support/link.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "zu/mutex.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

// Streams what the test tells it to.
class Source : public KyModule {
 public:
  explicit Source(boost::shared_ptr<KyBroker> broker) : KyModule(std::move(broker), "Source") {
    functionName("open", getName(), "Streams to the caller.");
    addParam("stream", "its id");
    bindMethod(&Source::open);
    functionName("big", getName(), "A binary of 3 MB.");
    bindMethod(&Source::big);
    offer("streams");
  }
  void open(const KyPeer& caller, int stream) {
    auto sender = getParentBroker()->sendStream(caller, stream);
    const zu::MutexLock guard(fMutex);
    fSenders[caller.name] = std::move(sender);
  }
  KyBinary big() { return KyBinary(std::vector<std::uint8_t>(3'000'000)); }
  // Of the newest stream to that peer.
  std::shared_ptr<KyStreamSender> to(const std::string& peer) {
    const zu::MutexLock guard(fMutex);
    return fSenders[peer];
  }
  void end(const std::string& peer) {
    const zu::MutexLock guard(fMutex);
    fSenders.erase(peer);
  }
  void stop() override {
    const zu::MutexLock guard(fMutex);
    fSenders.clear();
  }

 private:
  zu::Mutex fMutex;
  std::map<std::string, std::shared_ptr<KyStreamSender>> fSenders ZU_GUARDED_BY(fMutex);
};

class StreamsTest : public testing::Test {
 protected:
  StreamsTest() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
    source = KyModule::createModule<Source>(robot);
    desktop = connect("desktop");
  }
  ~StreamsTest() override {
    source.reset();
    for (const auto& peer : peers) peer->shutdown();
    robot->shutdown();
  }

  boost::shared_ptr<KyBroker> connect(const std::string& name) {
    KyBrokerOptions options;
    options.name = name;
    options.parent = robot->address();
    peers.push_back(KyBroker::create(options));
    return peers.back();
  }
  static std::unique_ptr<KyStreamReceiver> open(KyBroker& peer, std::size_t depth = 1,
                                                std::size_t bytes = SIZE_MAX) {
    auto stream = peer.receiveStream(depth, {}, bytes);
    peer.getProxy("Source", 0)->callVoid("open", stream->id());
    return stream;
  }

  boost::shared_ptr<KyBroker> robot;
  boost::shared_ptr<Source> source;
  std::vector<boost::shared_ptr<KyBroker>> peers;
  boost::shared_ptr<KyBroker> desktop;
};

KyBinary bytes(std::size_t size, std::uint8_t byte) {
  return KyBinary(std::vector<std::uint8_t>(size, byte));
}

}  // namespace

TEST_F(StreamsTest, WhatIsSentArrivesWithItsNumber) {
  const auto stream = open(*desktop);
  for (int i = 1; i <= 3; ++i) {
    source->to("desktop")->send(KyValue::array({"value", i}));
    const auto item = stream->next(10s);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->number, i);
    EXPECT_EQ(item->value, KyValue::array({"value", i}));
  }
  EXPECT_FALSE(stream->next(0ms));
  EXPECT_EQ(stream->ended(), "");
}

TEST_F(StreamsTest, LargeValuesArriveWhole) {
  const auto stream = open(*desktop);
  for (std::uint8_t i = 1; i <= 20; ++i) {
    source->to("desktop")->send(bytes(2'000'000, i));
    const auto item = stream->next(10s);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->value.asBinary(), bytes(2'000'000, i));
  }
  EXPECT_GT(source->to("desktop")->bytesPerSecond(), 0);
  EXPECT_GT(source->to("desktop")->roundTrip().count(), 0);
  EXPECT_EQ(source->to("desktop")->lost(), 0U);
}

TEST_F(StreamsTest, OnlyTheNewestWaitsForAReceiverThatTakesItsTime) {
  const auto stream = open(*desktop);
  const auto sender = source->to("desktop");
  constexpr int kValues = 200;
  for (int i = 1; i <= kValues; ++i) sender->send(KyValue::array({i, bytes(100'000, 0)}));
  std::optional<KyStreamReceiver::Item> newest;
  ASSERT_TRUE(waitUntil([&] {
    if (auto item = stream->next(0ms)) newest = std::move(item);
    return newest && newest->value[0].asInt() == kValues;
  }));
  EXPECT_EQ(newest->number + static_cast<std::int64_t>(sender->lost()), kValues);
}

TEST_F(StreamsTest, KeepsAsManyAsWasAskedFor) {
  const auto stream = open(*desktop, 3);
  for (int i = 1; i <= 5; ++i) {
    source->to("desktop")->send(i);
    ASSERT_TRUE(waitUntil([&] { return source->to("desktop")->isFree(); }));
  }
  // A call that is answered after them has passed them all.
  EXPECT_TRUE(desktop->getProxy("Source", 0)->call<bool>("ping"));
  for (int i = 3; i <= 5; ++i) EXPECT_EQ(stream->next(10s)->value, KyValue(i));
  EXPECT_FALSE(stream->next(0ms));
}

TEST_F(StreamsTest, TheBrokerSaysWhatTheyCarryInTheWordsOfTheReceiver) {
  EXPECT_TRUE(desktop->statistics().streams.empty());
  auto stream = open(*desktop);
  EXPECT_TRUE(desktop->statistics().streams.empty());
  stream->describe("exact");
  EXPECT_EQ(desktop->statistics().streams, std::vector<std::string>{"exact"});
  stream.reset();
  EXPECT_TRUE(desktop->statistics().streams.empty());
}

TEST_F(StreamsTest, TheSenderIsIdleWhenTheLastValueHasGoneOut) {
  auto stream = open(*desktop);
  const auto sender = source->to("desktop");
  EXPECT_TRUE(sender->isIdle());
  sender->send(bytes(100'000, 1));
  ASSERT_TRUE(stream->next(3s));
  EXPECT_TRUE(waitUntil([&] { return sender->isIdle(); }));
}

TEST_F(StreamsTest, WhatIsAbandonedIsLostAndTheNextArrives) {
  auto stream = open(*desktop);
  const auto sender = source->to("desktop");
  // More than goes out at once on a link of which nothing is known.
  sender->send(bytes(4'000'000, 1));
  sender->abandon();
  sender->send(bytes(100'000, 2));
  auto item = stream->next(3s);
  ASSERT_TRUE(item);
  if (item->value.asBinary().data()[0] == 1) item = stream->next(3s);  // the link was faster
  ASSERT_TRUE(item);
  EXPECT_EQ(item->value.asBinary().data()[0], 2);
  EXPECT_GE(sender->lost(), item->number == 1 ? 1U : 0U);
}

TEST_F(StreamsTest, KeepsFewerLargeValuesAndAlwaysTheNewest) {
  const auto stream = open(*desktop, 100, 8'000'000);
  const auto sender = source->to("desktop");
  for (std::uint8_t i = 1; i <= 6; ++i) {
    sender->send(bytes(3'000'000, i));
    ASSERT_TRUE(waitUntil([&] { return sender->isIdle(); }));
  }
  sender->send(bytes(9'000'000, 7));
  ASSERT_TRUE(waitUntil([&] { return sender->isIdle(); }));
  EXPECT_TRUE(desktop->getProxy("Source", 0)->call<bool>("ping"));
  const auto item = stream->next(10s);
  ASSERT_TRUE(item);
  EXPECT_EQ(item->number, 7);
  EXPECT_FALSE(stream->next(0ms));
}

TEST_F(StreamsTest, EachPeerHasItsOwn) {
  const auto other = connect("other");
  const auto first = open(*desktop);
  const auto second = open(*other);
  source->to("desktop")->send(1);
  source->to("other")->send(2);
  EXPECT_EQ(first->next(10s)->value, KyValue(1));
  EXPECT_EQ(second->next(10s)->value, KyValue(2));
}

TEST_F(StreamsTest, TheSenderIsToldThatNoMoreIsWanted) {
  auto stream = open(*desktop);
  const auto sender = source->to("desktop");
  EXPECT_FALSE(sender->isClosed());
  stream.reset();
  EXPECT_TRUE(waitUntil([&] { return sender->isClosed(); }));
  sender->send(1);  // goes nowhere
}

TEST_F(StreamsTest, TheReceiverIsToldThatNoMoreComes) {
  const auto stream = open(*desktop);
  source->to("desktop")->send(1);
  EXPECT_TRUE(stream->next(10s));
  source->end("desktop");
  EXPECT_FALSE(stream->next(10s));
  EXPECT_EQ(stream->ended(), "it was ended");
}

TEST_F(StreamsTest, AStreamThatIsOpenedTwiceEndsTheFirst) {
  const auto stream = open(*desktop);
  const auto first = source->to("desktop");
  desktop->getProxy("Source", 0)->callVoid("open", stream->id());
  EXPECT_TRUE(waitUntil([&] { return first->isClosed(); }));
  source->to("desktop")->send(7);
  EXPECT_EQ(stream->next(10s)->value, KyValue(7));
}

TEST_F(StreamsTest, APeerThatLeavesWithoutAWordEndsItsStreams) {
  const auto stream = open(*desktop);
  const auto sender = source->to("desktop");
  desktop->shutdown();
  EXPECT_TRUE(waitUntil([&] { return sender->isClosed(); }));
  EXPECT_EQ(stream->ended(), "the broker is closed");
}

TEST_F(StreamsTest, ARobotThatStopsEndsThem) {
  const auto stream = open(*desktop);
  source->end("desktop");
  source.reset();
  robot->shutdown();
  ASSERT_TRUE(waitUntil([&] { return !stream->ended().empty(); }));
  EXPECT_FALSE(stream->next(0ms));
}

TEST_F(StreamsTest, GoOnOverTheNextConnectionOfTheSamePeer) {
  RawPeer before(robot->address());
  ASSERT_TRUE(before.join("same"));
  before.send(callMessage(1, "Source", "open", {5}, 3000ms));
  ASSERT_EQ(before.receive()->kind, MessageKind::Result);
  const auto sender = source->to("raw");
  RawPeer after(robot->address());
  ASSERT_TRUE(after.join("same"));
  EXPECT_FALSE(sender->isClosed());
  EXPECT_TRUE(waitUntil([&] { return sender->lost() == 1; })) << "what was under way may be lost";
  sender->send("picture");
  const auto item = after.receive();
  ASSERT_TRUE(item);
  EXPECT_EQ(item->kind, MessageKind::Item);
  EXPECT_EQ(item->fields[2], KyValue("picture"));
}

TEST_F(StreamsTest, GoOnWhenWhatAcknowledgesThemWasLost) {
  Link link(robot->address().port);
  KyBrokerOptions options;
  options.name = "far";
  options.parent = KyAddress{"127.0.0.1", link.port()};
  peers.push_back(KyBroker::create(options));
  const auto stream = open(*peers.back());
  const auto sender = source->to("far");
  int inARow = 0;  // that did not arrive
  const auto arrives = [&] {
    sender->send(bytes(100'000, 1));
    return stream->next(50ms).has_value();
  };
  ASSERT_TRUE(waitUntil(arrives));
  link.set(LinkWay::ToRobot, {.damage = LinkDamage::Swallow});
  ASSERT_TRUE(waitUntil([&] { return (inARow = arrives() ? 0 : inARow + 1) == 5; }));
  link.set({});
  EXPECT_TRUE(waitUntil(arrives));
}

TEST_F(StreamsTest, RestWhileTheRobotHearsNothingOfThePeer) {
  RawPeer raw(robot->address());
  ASSERT_TRUE(raw.join());
  raw.send(callMessage(1, "Source", "open", {5}, 3000ms));
  ASSERT_EQ(raw.receive()->kind, MessageKind::Result);
  LogCapture log;
  const auto lines = [&] { return log.lines("ky"); };
  ASSERT_TRUE(waitUntil([&] { return !lines().empty(); }));
  ASSERT_EQ(lines()[0].rfind("info peerSilent: raw is silent", 0), 0U) << lines()[0];
  const auto sender = source->to("raw");
  sender->send("late");
  raw.send(pingMessage(1));
  EXPECT_EQ(raw.receive()->kind, MessageKind::Pong) << "the item would have come before";
  EXPECT_EQ(raw.receive()->kind, MessageKind::Item);
}

TEST_F(StreamsTest, GoFromRobotsToPeersOnly) {
  EXPECT_EQ(errorOfCall([&] { robot->receiveStream(); }),
            "robot.receiveStream: a robot receives no streams; its peers do");
  EXPECT_EQ(errorOfCall([&] {
              desktop->sendStream({"", ""}, 1);
            }),
            "desktop.sendStream: only a robot's own modules send streams");
  EXPECT_TRUE(waitUntil([sender = std::shared_ptr(robot->sendStream({"nobody", ""}, 1))] {
    return sender->isClosed();
  }));
}

TEST_F(StreamsTest, ACallIsNotBehindTheValuesOfAStreamThatNobodyReads) {
  RawPeer raw(robot->address());
  ASSERT_TRUE(raw.join("raw"));
  raw.send(callMessage(1, "Source", "open", {5}, 3000ms));
  ASSERT_EQ(raw.receive()->kind, MessageKind::Result);
  raw.readPieces();
  for (int i = 0; i < 20; ++i) source->to("raw")->send(bytes(1'000'000, 0));
  raw.send(callMessage(2, "Source", "ping", {}, 3000ms));
  // It never acknowledges anything, so it gets what every link carries, and then its answer.
  std::size_t pieces = 0;
  auto message = raw.receive();
  for (; message && message->kind == MessageKind::Piece && pieces < 1000; ++pieces)
    message = raw.receive();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, MessageKind::Result);
  EXPECT_LE(pieces, 4U);
}

TEST_F(StreamsTest, ASimplePeerGetsWholeMessagesAndNothingThatItWouldNotKnow) {
  RawPeer raw(robot->address());
  Message hello = helloMessage("raw", "raw", {});
  hello.fields[0] = kSimpleVersion;
  hello.fields.pop_back();
  raw.send(hello);
  const auto welcome = raw.receive();
  ASSERT_TRUE(welcome);
  EXPECT_EQ(welcome->fields[0], KyValue(1));
  EXPECT_EQ(welcome->fields[3], KyValue::array()) << "no offers";
  raw.send(callMessage(1, "Source", "open", {5}, 3000ms));
  ASSERT_EQ(raw.receive()->kind, MessageKind::Result);
  EXPECT_TRUE(waitUntil([&] { return source->to("raw")->isClosed(); }));
  for (int i = 0; i < 3; ++i) {
    raw.send(callMessage(2, "Source", "big", {}, 3000ms));
    const auto answer = raw.receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->kind, MessageKind::Result);
  }
}

// SPDX-License-Identifier: Apache-2.0
// Changes of the robot's memory over a link that is busy, or breaks.
#include <gtest/gtest.h>

#include <deque>

#include "robot/services/memory.h"
#include "support/wait.h"
#include "tests/ky/raw_peer.h"

namespace robot {
namespace {

using Ky::KyValue;
using Ky::MessageKind;
using namespace std::chrono_literals;

class MemoryChangesLink : public testing::Test {
 protected:
  MemoryChangesLink() {
    Ky::KyBrokerOptions options;
    options.name = "kyrobot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    fBroker = Ky::KyBroker::create(options);
    Ky::KyModule::createModule<Memory>(fBroker);
  }
  ~MemoryChangesLink() override { fBroker->shutdown(); }

  void write(const std::string& key, const KyValue& value) {
    fBroker->call("KyMemory", "insertData", {key, value});
  }
  // False when the answer is no result. The first item may come before it.
  bool open(RawPeer& peer, const KyValue& keys) {
    peer.send(Ky::callMessage(1, "KyMemory", "openChanges", {5, keys}, 3000ms));
    for (int i = 0; i < 10; ++i) {
      auto message = peer.receive();
      if (!message) return false;
      if (message->kind == MessageKind::Result) return true;
      fEarly.push_back(std::move(*message));
    }
    return false;
  }
  std::optional<Ky::Message> next(RawPeer& peer) {
    if (fEarly.empty()) return peer.receive();
    Ky::Message first = std::move(fEarly.front());
    fEarly.pop_front();
    return first;
  }
  // "NUMBER VALUE" of the next item, or of what kind the message is that came instead.
  std::string item(RawPeer& peer) {
    const auto message = next(peer);
    if (!message) return "nothing came";
    if (message->kind != MessageKind::Item)
      return "kind " + std::to_string(static_cast<int>(message->kind));
    return message->fields[1].toString() + " " + message->fields[2].toString();
  }
  // Whether nothing has come that the peer has not received.
  static bool hasReceivedAll(RawPeer& peer) {
    peer.send(Ky::pingMessage(77));
    const auto answer = peer.receive();
    return answer && answer->kind == MessageKind::Pong;
  }

  boost::shared_ptr<Ky::KyBroker> fBroker;
  std::deque<Ky::Message> fEarly;
};

TEST_F(MemoryChangesLink, GatherWhileItIsBusyAndAreToldAnewWhenItBreaks) {
  RawPeer before(fBroker->address());
  ASSERT_TRUE(before.join("same"));
  write("big", Ky::KyBinary(std::vector<std::uint8_t>(1'000'000)));
  write("gone", 1);
  // Nothing is acknowledged, so that the first item stays on its way.
  before.readPieces();
  ASSERT_TRUE(open(before, KyValue::array({"a", "b", "big", "gone", "never"})));
  EXPECT_EQ(next(before)->kind, MessageKind::Piece);
  fEarly.clear();
  for (int i = 1; i <= 1000; ++i) {
    write("a", i);
    write("b", -i);
  }
  write("big", 7);
  fBroker->call("KyMemory", "removeData", {"gone"});
  const char* state = R"([["a", 1000], ["b", -1000], ["big", 7], ["gone", null], ["never", null]])";
  RawPeer after(fBroker->address());
  ASSERT_TRUE(after.join("same"));
  EXPECT_EQ(item(after), std::string("2 ") + state) << "there was none between";
  EXPECT_TRUE(hasReceivedAll(after));
  // An idle one, whose last item may not have arrived.
  RawPeer last(fBroker->address());
  ASSERT_TRUE(last.join("same"));
  EXPECT_EQ(item(last), std::string("3 ") + state);
  write("b", 0);
  EXPECT_EQ(item(last), R"(4 [["b", 0]])");
}

TEST_F(MemoryChangesLink, EndWithThePeer) {
  RawPeer peer(fBroker->address());
  ASSERT_TRUE(peer.join("same"));
  ASSERT_TRUE(open(peer, KyValue::array({"a"})));
  EXPECT_EQ(item(peer), "1 []");
  peer.send(Ky::closeMessage(5));
  EXPECT_TRUE(hasReceivedAll(peer));
  write("a", 1);
  ASSERT_TRUE(open(peer, KyValue::array({"a"})));
  EXPECT_EQ(item(peer), R"(1 [["a", 1]])") << "begun anew";
  peer.send(Ky::byeMessage("done"));
  ASSERT_TRUE(peer.join("same"));
  write("a", 2);
  ASSERT_TRUE(open(peer, KyValue::array({"a"})));
  EXPECT_EQ(item(peer), R"(1 [["a", 2]])") << "nothing from before";
  EXPECT_TRUE(hasReceivedAll(peer));
}

}  // namespace
}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "transport/outbox.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Ky;
using namespace std::chrono_literals;

namespace {

using Time = Outbox::Time;

Parts small(const std::string& text) {
  return {text, {}};
}

Parts large(std::size_t bytes, std::uint8_t byte = 0) {
  return {"large", {KyBinary(std::vector<std::uint8_t>(bytes, byte))}};
}

// What is made when its turn has come.
struct Latest : Outbox::Later {
  explicit Latest(std::optional<Parts> parts) : message(std::move(parts)) {}
  std::optional<Parts> make() override {
    ++made;
    return message;
  }
  bool isWanted() const override { return wanted; }
  void over() override { ++ended; }
  std::optional<Parts> message;
  bool wanted = true;
  int made = 0;
  int ended = 0;
};

// A connection whose other end is told by hand what has arrived.
class Connection {
 public:
  // Acknowledges everything that is on its way, some time later.
  void arrive(Time::duration later) {
    now += later;
    for (; fArrived < sent.size(); ++fArrived)
      if (const auto& parts = sent[fArrived]; isPiece(parts))
        fNewest = static_cast<std::uint64_t>(
            decode(parts.text.data(), parts.text.size(), parts.attachments, {}).id());
    outbox.acknowledged(fNewest, now);
  }
  // What is on its way gets lost.
  void forget() {
    sent.clear();
    fArrived = 0;
  }
  // All of it, in a row.
  void arriveAll(Time::duration later) {
    for (int i = 0; i < 10'000 && fArrived < sent.size(); ++i) arrive(later);
  }

  bool isFull = false;
  std::vector<Parts> sent;
  Time now{1000s};
  Outbox outbox{[this](const Parts& parts) {
    if (!isFull) sent.push_back(parts);
    return !isFull;
  }};

 private:
  static bool isPiece(const Parts& parts) { return !parts.attachments.empty(); }

  std::size_t fArrived = 0;
  std::uint64_t fNewest = 0;
};

}  // namespace

TEST(Outbox, SendsSmallMessagesAtOnceWhateverWaits) {
  Connection on;
  on.outbox.add(large(1'000'000), on.now);
  const std::size_t before = on.sent.size();
  EXPECT_TRUE(on.outbox.add(small("urgent"), on.now));
  ASSERT_EQ(on.sent.size(), before + 1);
  EXPECT_EQ(on.sent.back().text, "urgent");
  EXPECT_GT(on.outbox.waitingBytes(), 900'000U);
}

TEST(Outbox, SendsNoMoreThanTheLinkIsKnownToCarry) {
  Connection on;
  on.outbox.add(large(1'000'000), on.now);
  EXPECT_LE(on.outbox.pace().inFlight(), 64U * 1024);
  EXPECT_GT(on.outbox.pace().inFlight(), 40U * 1024);
  for (const Parts& piece : on.sent) EXPECT_LE(piece.bytes(), 17U * 1024);
  on.arrive(50ms);
  EXPECT_GT(on.outbox.pace().inFlight(), 40U * 1024);
}

TEST(Outbox, SendsALargeMessageInOnePieceOnceTheLinkIsKnownToBeFast) {
  Connection on;
  on.outbox.add(large(20'000'000), on.now);
  on.arriveAll(100us);
  EXPECT_EQ(on.outbox.waitingBytes(), 0U);
  const std::size_t before = on.sent.size();
  on.outbox.add(large(1'000'000), on.now);
  ASSERT_EQ(on.sent.size(), before + 1);
  ASSERT_EQ(on.sent.back().attachments.size(), 2U);
  EXPECT_EQ(on.sent.back().attachments[1].size(), 1'000'000U);
}

TEST(Outbox, SendsLargeMessagesInTheirOrderAndWhole) {
  Connection on;
  for (std::uint8_t i = 1; i <= 3; ++i) on.outbox.add(large(100'000, i), on.now);
  on.arriveAll(10ms);
  Joiner joiner({});
  std::vector<int> order;
  for (const Parts& parts : on.sent) {
    const auto joined = joiner.add(
        decode(parts.text.data(), parts.text.size(), parts.attachments, {}), parts.attachments);
    if (!joined) continue;
    EXPECT_EQ(joined->attachments[0].size(), 100'000U);
    order.push_back(joined->attachments[0].data()[99'999]);
  }
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(Outbox, MakesAMessageOnlyWhenItsTurnHasCome) {
  Connection on;
  on.outbox.add(large(1'000'000), on.now);
  const auto later = std::make_shared<Latest>(large(10'000, 9));
  on.outbox.addLater(later, on.now);
  on.outbox.addLater(std::make_shared<Latest>(std::nullopt), on.now);
  EXPECT_EQ(later->made, 0);
  on.arriveAll(10ms);
  EXPECT_EQ(later->made, 1);
  EXPECT_EQ(later->ended, 1);
  EXPECT_EQ(on.sent.back().attachments.back().data()[0], 9);
}

TEST(Outbox, GivesUpInTheMiddleWhatIsNotWantedAnyMore) {
  Connection on;
  const auto later = std::make_shared<Latest>(large(1'000'000));
  on.outbox.addLater(later, on.now);
  on.arrive(10ms);
  ASSERT_EQ(later->ended, 0);
  later->wanted = false;
  on.outbox.addLater(std::make_shared<Latest>(large(10'000, 9)), on.now);
  EXPECT_EQ(later->ended, 1);
  on.arriveAll(10ms);
  EXPECT_EQ(on.sent.back().attachments.back().data()[0], 9);
  EXPECT_EQ(on.outbox.waitingBytes(), 0U);
}

TEST(Outbox, KeepsWhatTheSocketDoesNotTakeNow) {
  Connection on;
  on.isFull = true;
  EXPECT_FALSE(on.outbox.add(small("lost"), on.now));
  EXPECT_TRUE(on.outbox.add(large(20'000), on.now));
  EXPECT_TRUE(on.sent.empty());
  on.isFull = false;
  on.outbox.pump(on.now);
  on.arriveAll(10ms);
  EXPECT_EQ(on.outbox.waitingBytes(), 0U);
}

TEST(Outbox, GoesOnAfterWhatWasOnItsWayIsLost) {
  Connection on;
  on.outbox.add(large(1'000'000), on.now);
  on.forget();
  on.now += 900ms;
  on.outbox.pump(on.now);
  EXPECT_TRUE(on.sent.empty()) << "it may still come";
  on.now += 200ms;
  on.outbox.pump(on.now);
  EXPECT_FALSE(on.sent.empty());
  on.arriveAll(10ms);
  EXPECT_EQ(on.outbox.waitingBytes(), 0U);
}

TEST(Outbox, GoesOnAtTheSameRateWhenSomeOfItWasLost) {
  Connection on;
  on.outbox.add(large(1'000'000), on.now);
  on.arrive(50ms);
  on.forget();  // what was sent then; what is sent afterwards arrives
  on.now += 2s;
  on.outbox.pump(on.now);
  on.arrive(50ms);
  EXPECT_GT(on.outbox.pace().inFlight(), 40U * 1024);
}

TEST(Outbox, RestsWithLargeMessagesAndNotWithSmallOnes) {
  Connection on;
  on.outbox.rest(true);
  on.outbox.add(large(100'000), on.now);
  on.outbox.add(small("urgent"), on.now);
  ASSERT_EQ(on.sent.size(), 1U);
  EXPECT_EQ(on.sent.back().text, "urgent");
  on.outbox.rest(false);
  on.outbox.pump(on.now);
  EXPECT_GT(on.sent.size(), 1U);
}

TEST(Outbox, RefusesWhatWouldPileUp) {
  Connection on;
  int taken = 0;
  for (int i = 0; i < 1000; ++i) taken += on.outbox.add(large(100'000), on.now) ? 1 : 0;
  EXPECT_LT(taken, 100);
  EXPECT_GT(taken, 10);
}

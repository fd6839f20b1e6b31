// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/subscriptions.h"

#include <gtest/gtest.h>

#include "robot/in_process_robot.h"

namespace robot {
namespace {

using namespace std::chrono_literals;

const Ky::KyPeer kOne{"1", "PeriscopeBroker"};
const Ky::KyPeer kTwo{"2", "PeriscopeBroker"};

TEST(Subscriptions, HaveNoPeriodWhileNobodyIsThere) {
  EXPECT_EQ(Subscriptions().period(), std::nullopt);
  EXPECT_FALSE(Subscriptions().has(kOne));
}

TEST(Subscriptions, HaveThePeriodOfTheMostEager) {
  Subscriptions subscriptions;
  subscriptions.add(kOne, "slow", 1000ms);
  subscriptions.add(kTwo, "quick", 100ms);
  subscriptions.add(kOne, "middle", 500ms);
  EXPECT_EQ(subscriptions.period(), 100ms);
  subscriptions.remove(kTwo, "quick");
  EXPECT_EQ(subscriptions.period(), 500ms);
  subscriptions.remove(kOne, "middle");
  EXPECT_EQ(subscriptions.period(), 1000ms);
  subscriptions.remove(kOne, "slow");
  EXPECT_EQ(subscriptions.period(), std::nullopt);
}

TEST(Subscriptions, TellTwoDesktopsOfOneNameApart) {
  Subscriptions subscriptions;
  subscriptions.add(kOne, "Periscope", 1000ms);
  subscriptions.add(kTwo, "Periscope", 500ms);
  subscriptions.remove(kTwo, "Periscope");
  EXPECT_EQ(subscriptions.period(), 1000ms);
  EXPECT_TRUE(subscriptions.has(kOne));
  EXPECT_FALSE(subscriptions.has(kTwo));
}

TEST(Subscriptions, KeepTheShorterPeriodOfOneWhoSubscribesTwiceAndEndWithOneRemoval) {
  Subscriptions subscriptions;
  subscriptions.add(kOne, "Periscope", 100ms);
  subscriptions.add(kOne, "Periscope", 1000ms);
  EXPECT_EQ(subscriptions.period(), 100ms);
  subscriptions.add(kOne, "Periscope", 50ms);
  EXPECT_EQ(subscriptions.period(), 50ms);
  subscriptions.remove(kOne, "Periscope");
  EXPECT_EQ(subscriptions.period(), std::nullopt);
  EXPECT_NO_THROW(subscriptions.remove(kOne, "Periscope"));
}

TEST(Subscriptions, OfALostPeerGoAndTheOthersStay) {
  Subscriptions subscriptions;
  subscriptions.add(kOne, "a", 10ms);
  subscriptions.add(kOne, "b", 20ms);
  subscriptions.add(kTwo, "a", 30ms);
  subscriptions.removeAllOf(kOne);
  EXPECT_EQ(subscriptions.period(), 30ms);
  EXPECT_FALSE(subscriptions.has(kOne));
}

TEST(Subscriptions, RefuseWhatCannotBeKept) {
  Subscriptions subscriptions;
  EXPECT_EQ(errorText([&] { subscriptions.add(kOne, "me", -1ms); }),
            "a period of -1 ms can't be kept; 0 is as often as possible");
  const std::string length = "a subscriber's name has 1 to 128 bytes";
  EXPECT_EQ(errorText([&] { subscriptions.add(kOne, "", 1ms); }), length);
  EXPECT_EQ(errorText([&] { subscriptions.add(kOne, std::string(129, 'n'), 1ms); }), length);
  EXPECT_EQ(subscriptions.period(), std::nullopt);
}

TEST(Subscriptions, AreBoundedForEachPeer) {
  Subscriptions subscriptions;
  for (int i = 0; i < 32; ++i) subscriptions.add(kOne, "name " + std::to_string(i), 1ms);
  EXPECT_EQ(errorText([&] { subscriptions.add(kOne, "one more", 1ms); }),
            "there are 32 subscriptions already; unsubscribe first");
  EXPECT_NO_THROW(subscriptions.add(kOne, "name 7", 2ms));
  EXPECT_NO_THROW(subscriptions.add(kTwo, "one more", 1ms));
}

}  // namespace
}  // namespace robot

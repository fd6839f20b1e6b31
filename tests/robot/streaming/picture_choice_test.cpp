// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/picture_choice.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ky/error.h"
#include "robot/streaming/picture_encoder.h"

namespace robot {
namespace {

using namespace std::chrono_literals;
using Turn = PictureChoice::Turn;
using Milliseconds = std::chrono::milliseconds;

constexpr std::size_t kBytes = 640 * 480 * 2;  // 18.4 MB/s of them
constexpr LinkState kFree{true, 100e6, 100us};
constexpr LinkState kWide{true, 100e6, 20ms};
constexpr LinkState kBusy{false, 250e3, 20ms};
constexpr LinkState kQuiet{true, 250e3, 20ms};
constexpr LinkState kWider{true, 10e6, 20ms};  // but not wide enough
constexpr LinkState kWiderBusy{false, 10e6, 20ms};

// A camera with 30 pictures a second, and a look at the link in between.
class Camera {
 public:
  explicit Camera(Encoding encoding) : choice(encoding) {}

  Turn due(const LinkState& link) {
    now += 33333us;
    return choice.due({2, kBytes, 33333us}, link, now);
  }
  bool givesUp(const LinkState& link, Milliseconds later) {
    return choice.givesUp(link, now + later);
  }
  // Until the choice is H.264.
  void encode() {
    for (int i = 0; i < 60 && !choice.isEncoding(); ++i) {
      due(kBusy);
      givesUp(kBusy, 5ms);
    }
  }
  // Pictures before the next one that is sent as it is, of at most that many.
  int encodedBeforeProbe(const LinkState& link, int most = 30 * 400) {
    for (int i = 0; i < most; ++i)
      if (due(link) == Turn::Exact) return i;
    return most;
  }

  PictureChoice choice;
  PictureChoice::Time now{};
};

TEST(PictureChoice, KnowsThreeEncodings) {
  EXPECT_EQ(encodingOf("automatic"), Encoding::Automatic);
  EXPECT_EQ(encodingOf("exact"), Encoding::Exact);
  EXPECT_EQ(encodingOf("saving"), Encoding::Saving);
  try {
    encodingOf("mjpeg");
    ADD_FAILURE();
  } catch (const Ky::KyError& error) {
    EXPECT_STREQ(error.what(),
                 "pictures can't be sent as \"mjpeg\"; they can as \"automatic\", \"exact\" and "
                 "\"saving\"");
  }
}

TEST(PictureChoice, ExactIsExactWhateverTheLink) {
  Camera camera(Encoding::Exact);
  for (int i = 0; i < 300; ++i) {
    EXPECT_EQ(camera.due(kBusy), Turn::Exact);
    EXPECT_FALSE(camera.givesUp(kBusy, 30ms));
  }
}

TEST(PictureChoice, SavingIsNeverExactAndStaysLow) {
  Camera camera(Encoding::Saving);
  for (int i = 0; i < 30 * 60; ++i) {
    ASSERT_EQ(camera.due(kFree), Turn::Encoded);
    ASSERT_LE(camera.choice.bitRate(), 800000);
  }
  EXPECT_EQ(camera.choice.bitRate(), 800000);
  EXPECT_EQ(camera.due(kBusy), Turn::Nothing);
}

TEST(PictureChoice, AutomaticIsExactOnAFreeLink) {
  Camera camera(Encoding::Automatic);
  for (int i = 0; i < 30 * 60; ++i) {
    ASSERT_EQ(camera.due(kWide), Turn::Exact);
    ASSERT_FALSE(camera.givesUp(kWide, 5ms));
  }
}

TEST(PictureChoice, APictureThatIsUnderWayForLongIsGivenUp) {
  const struct {
    LinkState link;
    Milliseconds patience;
  } cases[] = {{{false, 1e6, 10ms}, 150ms},
               {{false, 1e6, 100ms}, 300ms},  // three times there and back
               {{false, 0, 0ms}, 500ms}};     // nothing is known yet
  for (const auto& [link, patience] : cases) {
    Camera camera(Encoding::Automatic);
    EXPECT_EQ(camera.due({}), Turn::Exact);
    EXPECT_TRUE(camera.choice.isWatching());
    EXPECT_FALSE(camera.givesUp(link, patience - 1ms));
    EXPECT_TRUE(camera.givesUp(link, patience + 1ms));
    EXPECT_FALSE(camera.choice.isWatching());
    EXPECT_EQ(camera.due({true, link.bytesPerSecond, link.roundTrip}), Turn::Encoded);
  }
}

TEST(PictureChoice, WhatWouldHaveCarriedAPictureInTimeIsNotBelieved) {
  Camera camera(Encoding::Automatic);
  camera.due(kWide);
  EXPECT_TRUE(camera.givesUp({false, 100e6, 20ms}, 200ms));
  EXPECT_EQ(camera.choice.bitRate(), 1000000);
}

TEST(PictureChoice, ARoundTripBehindAQueueIsNotWaitedFor) {
  Camera camera(Encoding::Automatic);
  camera.due({});
  EXPECT_FALSE(camera.givesUp({false, 1e6, 5s}, 890ms));
  EXPECT_TRUE(camera.givesUp({false, 1e6, 5s}, 910ms));
}

TEST(PictureChoice, TooManyPicturesThatFindTheLinkBusyEndExactOnes) {
  const auto exactAfterTwoSeconds = [](int busyOf12) {
    Camera camera(Encoding::Automatic);
    for (int i = 0; i < 66; ++i) {
      camera.due(i % 12 < busyOf12 ? kWiderBusy : kWider);
      camera.givesUp(kWider, 10ms);
    }
    return !camera.choice.isEncoding();
  };
  EXPECT_TRUE(exactAfterTwoSeconds(0));
  EXPECT_TRUE(exactAfterTwoSeconds(1));
  EXPECT_FALSE(exactAfterTwoSeconds(3));
  EXPECT_FALSE(exactAfterTwoSeconds(6));
}

TEST(PictureChoice, ABusyComputerIsNoSlowLink) {
  Camera camera(Encoding::Automatic);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(camera.due({false, 100e6, 100us}), Turn::Exact);
    ASSERT_FALSE(camera.givesUp({false, 100e6, 100us}, 30ms));
  }
}

TEST(PictureChoice, NothingIsEncodedWhileTheLinkIsBusy) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  EXPECT_EQ(camera.due(kQuiet), Turn::Encoded);
  EXPECT_EQ(camera.due(kBusy), Turn::Nothing);
  EXPECT_EQ(camera.due(kQuiet), Turn::Encoded);
}

TEST(PictureChoice, AfterFiveQuietSecondsOnePictureIsSentAsItIs) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  EXPECT_NEAR(camera.encodedBeforeProbe(kWider), 150, 2);
  EXPECT_FALSE(camera.givesUp(kWiderBusy, 10ms));
  EXPECT_EQ(camera.due(kWiderBusy), Turn::Nothing) << "one at a time";
  EXPECT_TRUE(camera.givesUp(kWiderBusy, 10ms));
  EXPECT_EQ(camera.due(kWider), Turn::Encoded);
}

TEST(PictureChoice, APictureThatWasOutQuicklyBringsBackExactOnes) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  camera.encodedBeforeProbe(kWider);
  EXPECT_FALSE(camera.givesUp(kWider, 10ms));
  EXPECT_FALSE(camera.choice.isEncoding());
  EXPECT_EQ(camera.due(kWider), Turn::Exact);
}

TEST(PictureChoice, APictureThatWasOutLateDoesNot) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  camera.encodedBeforeProbe(kWider);
  EXPECT_FALSE(camera.givesUp(kWider, 25ms)) << "it has gone out";
  EXPECT_TRUE(camera.choice.isEncoding());
  EXPECT_EQ(camera.due(kWider), Turn::Encoded);
}

TEST(PictureChoice, TriesThatFailBecomeRareDownToOneInFiveMinutes) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  for (const int seconds : {5, 10, 20, 40, 80, 160, 300, 300}) {
    EXPECT_NEAR(camera.encodedBeforeProbe(kWider), 30 * seconds, 3);
    EXPECT_TRUE(camera.givesUp(kWiderBusy, 40ms));
  }
}

TEST(PictureChoice, ATryAfterWhichTheLinkIsBusyAgainHasFailedToo) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  for (const int seconds : {5, 10, 20}) {
    EXPECT_NEAR(camera.encodedBeforeProbe(kWider), 30 * seconds, 3);
    EXPECT_FALSE(camera.givesUp(kWider, 10ms));
    camera.encode();
  }
}

TEST(PictureChoice, ThereIsNoTryOverAHopelessLinkOrWhileSomethingIsHeldUp) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  EXPECT_EQ(camera.encodedBeforeProbe(kQuiet, 30 * 60), 30 * 60);
  for (int i = 0; i < 15; ++i) {
    EXPECT_EQ(camera.due(kWiderBusy), Turn::Nothing);
    EXPECT_EQ(camera.encodedBeforeProbe(kWider, 120), 120);
  }
}

TEST(PictureChoice, AnotherStreamGoesOnWhereThisOneWas) {
  Camera camera(Encoding::Automatic);
  camera.encode();
  camera.encodedBeforeProbe(kWider);
  EXPECT_TRUE(camera.choice.isWatching());
  camera.choice.goOn();
  EXPECT_FALSE(camera.choice.isWatching());
  EXPECT_EQ(camera.due(kWider), Turn::Exact) << "there was no answer to the try";
  EXPECT_TRUE(camera.choice.isEncoding());
}

// ---- the bit rate

TEST(BitRate, IsBoundedByTheSizeOfThePicture) {
  EXPECT_EQ(mostBitRate(0), 1500000);
  EXPECT_EQ(mostBitRate(1), 2000000);
  EXPECT_EQ(mostBitRate(2), 8000000);
  EXPECT_EQ(mostBitRate(3), 20000000);
  EXPECT_EQ(savingBitRate(0), 150000);
  EXPECT_EQ(savingBitRate(2), 800000);
  EXPECT_NEAR(savingBitRate(1), 282842, 1);
  EXPECT_NEAR(savingBitRate(3), 2262741, 1);
}

TEST(BitRate, BeginsWithSomeOfWhatTheLinkCarries) {
  BitRate rate;
  rate.begin({true, 250e3, 20ms}, 8000000);
  EXPECT_EQ(rate.bitsPerSecond(), 1200000);
  rate.begin({}, 8000000);
  EXPECT_EQ(rate.bitsPerSecond(), 1000000);
  rate.begin({true, 100e6, 20ms}, 8000000);
  EXPECT_EQ(rate.bitsPerSecond(), 8000000);
  rate.begin({true, 1e3, 20ms}, 8000000);
  EXPECT_EQ(rate.bitsPerSecond(), PictureEncoder::kMinBitRate);
}

// What is left of a rate of a million where every `of`th picture goes out, and the others find it
// still under way.
int rateAfter(int pictures, int of) {
  BitRate rate;
  BitRate::Time now{};
  for (int i = 0; i <= pictures; ++i, now += 33ms) rate.due({i % of == 0, 0, 20ms}, 8000000, now);
  return rate.bitsPerSecond();
}

TEST(BitRate, FallsOnceForAllThatIsHeldUpInARow) {
  EXPECT_EQ(rateAfter(2, 2), 950000);
  EXPECT_EQ(rateAfter(10, 10), 950000);
  EXPECT_EQ(rateAfter(300, 300), 950000);
}

TEST(BitRate, FallsFurtherWherePicturesAreHeldUpAgainAndAgain) {
  EXPECT_EQ(rateAfter(12, 6), 712500);
  EXPECT_LT(rateAfter(60, 6), 150000);
  EXPECT_LT(rateAfter(60, 2), 150000);
}

// In the end, as a share of what the link carries, which stands still for so long in every second.
double settledOver(double bitsPerSecond, Milliseconds stall) {
  BitRate rate;
  BitRate::Time now{};
  rate.begin({true, bitsPerSecond / 8, 20ms}, 8000000);
  double waiting = 0;  // pictures' times that the link has to do
  double sum = 0;
  for (int i = 0; i < 30 * 120; ++i, now += 33ms) {
    if (now.time_since_epoch() % 1000ms >= stall) waiting = std::max(0.0, waiting - 1);
    const bool isIdle = waiting <= 1;
    rate.due({isIdle, bitsPerSecond / 8, 20ms}, 8000000, now);
    if (isIdle) waiting += rate.bitsPerSecond() / bitsPerSecond;
    if (i >= 30 * 60) sum += rate.bitsPerSecond();
  }
  return sum / (30 * 60) / bitsPerSecond;
}

TEST(BitRate, SettlesAroundWhatTheLinkCarries) {
  EXPECT_GT(settledOver(2e6, 0ms), 0.7);
  EXPECT_LT(settledOver(2e6, 0ms), 1.05);
}

TEST(BitRate, IsNotDrivenDownByALinkThatStandsStillNowAndThen) {
  EXPECT_GT(settledOver(5e6, 300ms), 0.4);
}

}  // namespace
}  // namespace robot

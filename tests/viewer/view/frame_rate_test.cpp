// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/frame_rate.h"

#include <gtest/gtest.h>

#include "zu/os.h"

namespace {

// A clock that stands still until it is told.
class FrameRate : public testing::Test {
 protected:
  double after(std::int64_t microseconds, bool newFrame) {
    fNow += microseconds;
    return ComputeCurrentFrameRate(newFrame);
  }
  double fill(std::int64_t interval) {
    double rate = 0;
    for (int i = 0; i < 30; ++i) rate = after(interval, true);
    return rate;
  }

  std::int64_t fNow = 1331040000000000;
  zu::os::ClockOverride fClock{[this] {
    return zu::os::TimeValue{fNow / 1000000, fNow % 1000000};
  }};
};

TEST_F(FrameRate, IsZeroAtTheFirstCall) {
  EXPECT_EQ(after(0, true), 0);
}

TEST_F(FrameRate, IsThatOfThirtyIntervalsOnceTheyAreSeen) {
  after(0, true);
  EXPECT_DOUBLE_EQ(fill(66666), 15.0);
}

TEST_F(FrameRate, IsRoundedDownToOneDecimal) {
  after(0, true);
  EXPECT_DOUBLE_EQ(fill(80775), 12.3);  // 12.38
}

TEST_F(FrameRate, CountsTheEmptySlotsWhileTheRingFills) {
  after(0, true);
  EXPECT_DOUBLE_EQ(after(100000, true), 300.0);
  EXPECT_DOUBLE_EQ(after(100000, true), 150.0);
}

TEST_F(FrameRate, ForgetsTheOldestInterval) {
  after(0, true);
  fill(100000);
  EXPECT_DOUBLE_EQ(after(400000, true), 9.0);  // 30 frames in 3.3 s
  EXPECT_DOUBLE_EQ(fill(100000), 10.0);
}

TEST_F(FrameRate, CrossesTheSecondBetweenTwoFrames) {
  fNow = 1331040000999999;
  after(0, true);
  EXPECT_DOUBLE_EQ(after(2000001, true), 14.9);  // 14.9999925
}

TEST_F(FrameRate, FallsWhileTheSameFrameIsPaintedAgain) {
  after(0, true);
  EXPECT_DOUBLE_EQ(fill(100000), 10.0);
  EXPECT_DOUBLE_EQ(after(300000, false), 9.0);
  EXPECT_DOUBLE_EQ(after(300000, false), 8.3);
}

TEST_F(FrameRate, DoesNotAdvanceWithARepaint) {
  after(0, true);
  fill(100000);
  after(1000000, false);
  after(1000000, false);
  // Both went into the slot that the next frame overwrites.
  EXPECT_DOUBLE_EQ(after(100000, true), 10.0);
}

TEST_F(FrameRate, IsZeroWhileNoTimePasses) {
  after(0, true);
  EXPECT_EQ(after(0, true), 0);
  EXPECT_EQ(after(1, true), 0);
  EXPECT_DOUBLE_EQ(after(1, true), 15000000.0);
}

TEST_F(FrameRate, TakesAClockSetBackAsOneLongInterval) {
  after(0, true);
  EXPECT_DOUBLE_EQ(after(-1000000, true), 0.0);  // 2^32 - 1000000 us
  EXPECT_DOUBLE_EQ(fill(100000), 10.0);
}

TEST_F(FrameRate, MeasuresModuloTwoToTheThirtySecond) {
  after(0, true);
  EXPECT_DOUBLE_EQ(after((std::int64_t{1} << 32) + 1000000, true), 30.0);
}

}  // namespace

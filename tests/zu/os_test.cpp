// SPDX-License-Identifier: Apache-2.0
#include "zu/os.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

std::int64_t systemMicroseconds() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

TEST(Os, TheTimeOfDayIsThatOfTheSystem) {
  const std::int64_t before = systemMicroseconds();
  zu::os::TimeValue now;
  zu::os::gettimeofday(&now);
  const std::int64_t after = systemMicroseconds();
  EXPECT_GE(now.tv_sec * 1'000'000 + now.tv_usec, before);
  EXPECT_LE(now.tv_sec * 1'000'000 + now.tv_usec, after);
}

TEST(Os, TheMicrosecondsStayBelowASecond) {
  for (int i = 0; i < 10'000; ++i) {
    zu::os::TimeValue now;
    zu::os::gettimeofday(&now);
    ASSERT_GE(now.tv_usec, 0);
    ASSERT_LT(now.tv_usec, 1'000'000);
  }
}

TEST(Os, AnotherClockCountsForAsLongAsItLives) {
  {
    const zu::os::ClockOverride clock([] { return zu::os::TimeValue{12, 345'678}; });
    zu::os::TimeValue now;
    zu::os::gettimeofday(&now);
    EXPECT_EQ(now.tv_sec, 12);
    EXPECT_EQ(now.tv_usec, 345'678);
    EXPECT_EQ(zu::os::nowMicroseconds(), 12'345'678);
  }
  EXPECT_GT(zu::os::nowMicroseconds(), 1'000'000'000'000'000);
}

TEST(Os, MicrosecondsDoNotOverflowBeyondTheYear2038) {
  const zu::os::ClockOverride clock([] { return zu::os::TimeValue{5'000'000'000, 1}; });
  EXPECT_EQ(zu::os::nowMicroseconds(), 5'000'000'000'000'001);
}

TEST(Os, ASecondOverrideIsRefusedAndLeavesTheFirst) {
  const zu::os::ClockOverride clock([] { return zu::os::TimeValue{1, 0}; });
  EXPECT_THROW(zu::os::ClockOverride([] { return zu::os::TimeValue{2, 0}; }), std::logic_error);
  EXPECT_EQ(zu::os::nowMicroseconds(), 1'000'000);
}

TEST(Os, TheClockMayChangeWhileOtherThreadsAskForTheTime) {
  std::thread reader([] {
    for (int i = 0; i < 2'000; ++i) EXPECT_GT(zu::os::nowMicroseconds(), 0);
  });
  for (int i = 0; i < 200; ++i)
    const zu::os::ClockOverride clock([] { return zu::os::TimeValue{1, 0}; });
  reader.join();
}

}  // namespace

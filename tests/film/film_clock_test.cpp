// SPDX-License-Identifier: Apache-2.0
#include "film/film_clock.h"

#include <gtest/gtest.h>

namespace {

using film::FilmClock;

constexpr std::int64_t kStart = 1700000000123456;

TEST(FilmClock, BeginsAtZeroAndKeepsTheTimesBetween) {
  FilmClock clock(25);
  EXPECT_EQ(clock.next(kStart), 0);
  EXPECT_EQ(clock.next(kStart + 40000), 40);
  EXPECT_EQ(clock.next(kStart + 1540000), 1540);
  EXPECT_EQ(clock.newest(), 1540);
}

TEST(FilmClock, AddsUpWhatItRounds) {
  FilmClock clock(30);
  std::int64_t time = 0;
  for (int i = 0; i <= 300; ++i) time = clock.next(kStart + i * 33333LL);
  EXPECT_EQ(time, 300 * 33333 / 1000);
}

TEST(FilmClock, GoesOnWhenTheClockIsSet) {
  FilmClock clock(25);
  clock.next(kStart);
  EXPECT_EQ(clock.next(0), 40) << "back";
  EXPECT_EQ(clock.next(kStart), 80) << "far ahead";
  EXPECT_EQ(clock.next(kStart), 120) << "the same time";
  EXPECT_EQ(clock.next(kStart + 10000), 130);
}

TEST(FilmClock, GivesNoTwoPicturesTheSameTime) {
  FilmClock clock(25);
  clock.next(kStart);
  EXPECT_EQ(clock.next(kStart + 10), 1);
  EXPECT_EQ(clock.next(kStart + 20), 2);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "broker/awake_clock.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(AwakeClock, GoesOnWhileItsOwnerComesRound) {
  Ky::AwakeClock clock;
  auto now = std::chrono::steady_clock::now() + 1s;
  clock.tick(now);
  const auto start = clock.now();
  for (int i = 0; i < 10; ++i) clock.tick(now += 100ms);
  EXPECT_EQ(clock.now() - start, 1s);
}

TEST(AwakeClock, DoesNotCountTheTimeInWhichItsOwnerStoodStill) {
  Ky::AwakeClock clock;
  auto now = std::chrono::steady_clock::now() + 1s;
  clock.tick(now);
  const auto start = clock.now();
  clock.tick(now += 1h);
  EXPECT_EQ(clock.now() - start, 250ms);
  clock.tick(now += 100ms);
  EXPECT_EQ(clock.now() - start, 350ms);
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/detection/saturate.h"

#include <gtest/gtest.h>

TEST(TruncateToInt, CutsTowardsZero) {
  EXPECT_EQ(truncateToInt(20.9), 20);
  EXPECT_EQ(truncateToInt(-20.9), -20);
  EXPECT_EQ(truncateToInt(0.0), 0);
}

TEST(TruncateToInt, HoldsWhatNoIntCan) {
  EXPECT_EQ(truncateToInt(1e300), std::numeric_limits<int>::max());
  EXPECT_EQ(truncateToInt(-1e300), std::numeric_limits<int>::min());
  EXPECT_EQ(truncateToInt(std::numeric_limits<double>::infinity()),
            std::numeric_limits<int>::max());
  EXPECT_EQ(truncateToInt(-std::numeric_limits<double>::infinity()),
            std::numeric_limits<int>::min());
  EXPECT_EQ(truncateToInt(std::nan("")), 0);
}

TEST(TruncateToInt, KeepsTheExtremeInts) {
  EXPECT_EQ(truncateToInt(2147483647.0), 2147483647);
  EXPECT_EQ(truncateToInt(2147483646.5), 2147483646);
  EXPECT_EQ(truncateToInt(-2147483648.0), std::numeric_limits<int>::min());
}

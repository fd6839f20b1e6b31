// SPDX-License-Identifier: Apache-2.0
// The fuzz target of streams with random bytes, so that the suite notices what breaks it.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

TEST(StreamsFuzz, TenThousandRandomConversationsCrashNothing) {
  std::mt19937 random(1);
  for (int round = 0; round < 10'000; ++round) {
    std::vector<std::uint8_t> bytes(random() % 500);
    // Small ones choose what is sent more often than large ones.
    for (std::uint8_t& byte : bytes)
      byte = static_cast<std::uint8_t>(random() % 2 == 0 ? random() % 16 : random());
    EXPECT_EQ(LLVMFuzzerTestOneInput(bytes.data(), bytes.size()), 0);
  }
}

}  // namespace

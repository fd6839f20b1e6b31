// SPDX-License-Identifier: Apache-2.0
#include "wire/packing.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Ky;

namespace {

KyValue thereAndBack(const KyValue& value) {
  const Parts parts = pack(value, {});
  return unpack(parts.text.data(), parts.text.size(), parts.attachments, {});
}

KyValue nested(int depth) {
  KyValue value = 1;
  for (int i = 0; i < depth; ++i) value = KyValue::array({value});
  return value;
}

TEST(Packing, BringsEveryValueBack) {
  const KyValue values[] = {
      KyValue(),
      false,
      0,
      -1,
      127,
      -33,
      65536,
      std::numeric_limits<std::int64_t>::min(),
      std::numeric_limits<std::int64_t>::max(),
      1.5,
      1.0,
      -0.0,
      std::numeric_limits<double>::infinity(),
      "",
      std::string(70000, 'x'),
      KyBinary(),
      KyValue::array({nested(5), KyValue::array({1, 2, 3})}),
  };
  for (const KyValue& value : values) EXPECT_EQ(thereAndBack(value), value) << value.toString();
}

TEST(Packing, KeepsASmallBinaryInTheTextAndALargeOneBesideIt) {
  const Parts small = pack(KyBinary(std::vector<std::uint8_t>(kInlineBytes)), {});
  EXPECT_TRUE(small.attachments.empty());
  const KyBinary large(std::vector<std::uint8_t>(kInlineBytes + 1, 9));
  const Parts parts = pack(KyValue::array({large, large}), {});
  ASSERT_EQ(parts.attachments.size(), 2u);
  EXPECT_EQ(parts.attachments[0].data(), large.data());  // not copied
  EXPECT_LT(parts.text.size(), 20u);
  EXPECT_EQ(thereAndBack(KyValue::array({large, 1, large})), KyValue::array({large, 1, large}));
}

TEST(Packing, RefusesToPackBeyondTheLimits) {
  KyLimits limits;
  limits.packedBytes = 1000;
  limits.messageBytes = 10000;
  limits.values = 100;
  limits.depth = 4;
  EXPECT_NO_THROW(pack(nested(4), limits));
  EXPECT_THROW(pack(nested(5), limits), KyError);
  EXPECT_THROW(pack(std::string(1001, 'x'), limits), KyError);
  EXPECT_THROW(pack(KyValue::Array(100), limits), KyError);
  EXPECT_NO_THROW(pack(KyValue::Array(99), limits));
  EXPECT_THROW(pack(KyBinary(std::vector<std::uint8_t>(10001)), limits), KyError);
}

TEST(Packing, RefusesToUnpackBeyondTheLimits) {
  KyLimits limits;
  limits.values = 100;
  limits.depth = 4;
  limits.packedBytes = 1000;
  const auto unpackFrom = [&](const KyValue& value) {
    const Parts parts = pack(value, {});
    return unpack(parts.text.data(), parts.text.size(), parts.attachments, limits);
  };
  EXPECT_NO_THROW(unpackFrom(nested(4)));
  EXPECT_THROW(unpackFrom(nested(5)), KyError);
  EXPECT_THROW(unpackFrom(KyValue::Array(101)), KyError);
  EXPECT_THROW(unpackFrom(std::string(1001, 'x')), KyError);
}

TEST(Packing, RefusesWhatIsCutOffAtEveryPlace) {
  const Parts parts = pack(KyValue::array({1, 2.5, "text", KyValue::array({true, 70000})}), {});
  for (std::size_t size = 0; size < parts.text.size(); ++size)
    EXPECT_THROW(unpack(parts.text.data(), size, {}, {}), KyError) << size;
}

TEST(Packing, RefusesWhatNoValueCanBe) {
  const std::string bad[] = {
      std::string("\x80", 1),                                  // a map
      std::string("\xc1", 1),                                  // never used
      std::string("\xcf\xff\xff\xff\xff\xff\xff\xff\xff", 9),  // beyond 63 bits
      std::string("\xd6\x02\x00\x00\x00\x00", 6),              // an unknown extension
      std::string("\x01\x02", 2),                              // two values
  };
  for (const std::string& text : bad)
    EXPECT_THROW(unpack(text.data(), text.size(), {}, {}), KyError);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "ky/value.h"

#include <gtest/gtest.h>

#include <limits>

#include "ky/convert.h"

using namespace Ky;

namespace {

TEST(Value, KnowsItsType) {
  EXPECT_TRUE(KyValue().isNothing());
  EXPECT_TRUE(KyValue(true).isBool());
  EXPECT_TRUE(KyValue(1).isInt());
  EXPECT_TRUE(KyValue(1u).isInt());
  EXPECT_TRUE(KyValue(1.5f).isFloat());
  EXPECT_TRUE(KyValue("text").isString());
  EXPECT_TRUE(KyValue(KyBinary()).isBinary());
  EXPECT_TRUE(KyValue::array().isArray());
}

TEST(Value, ReadsAnIntAsAFloatButNeverAFloatAsAnInt) {
  EXPECT_EQ(KyValue(3).asFloat(), 3.0f);
  EXPECT_EQ(KyValue(3).asDouble(), 3.0);
  EXPECT_THROW(KyValue(3.0).asInt(), KyError);
  EXPECT_THROW(KyValue(true).asInt(), KyError);
  EXPECT_THROW(KyValue(1).asBool(), KyError);
  EXPECT_THROW(KyValue("3").asInt(), KyError);
}

TEST(Value, ThrowsWhenANumberDoesNotFitAnInt) {
  EXPECT_EQ(KyValue(std::numeric_limits<int>::max()).asInt(), std::numeric_limits<int>::max());
  EXPECT_THROW(KyValue(1LL << 31).asInt(), KyError);
  EXPECT_THROW(KyValue(-(1LL << 31) - 1).asInt(), KyError);
  EXPECT_EQ(KyValue(1LL << 31).asInt64(), 1LL << 31);
}

TEST(Value, NamesBothTypesWhenReadWrongly) {
  try {
    KyValue("text").asInt();
    FAIL();
  } catch (const KyError& error) {
    EXPECT_STREQ(error.what(), "a value of type string can't be read as int");
  }
}

TEST(Value, CountsTheElementsOfAnArrayAndNoneOfNothing) {
  EXPECT_EQ(KyValue().size(), 0u);
  EXPECT_EQ(KyValue::array({1, 2}).size(), 2u);
  EXPECT_THROW(KyValue(1).size(), KyError);
  EXPECT_THROW(KyValue::array({1, 2})[2], KyError);
  EXPECT_THROW(KyValue()[0], KyError);
}

TEST(Value, BecomesAnArrayWhenSomethingIsPushed) {
  KyValue value;
  value.push(1);
  value.push("two");
  EXPECT_EQ(value, KyValue::array({1, "two"}));
  KyValue number(3);
  EXPECT_THROW(number.push(1), KyError);
}

TEST(Value, PrintsAsJson) {
  struct Case {
    KyValue value;
    const char* text;
  };
  const Case cases[] = {
      {KyValue(), "null"},
      {true, "true"},
      {-7, "-7"},
      {0.5, "0.5"},
      {"a\"b\\\n\x01", "\"a\\\"b\\\\\\n\\u0001\""},
      {KyBinary(std::vector<std::uint8_t>(3)), "<3 bytes>"},
      {KyValue::array({1, KyValue::array(), "x"}), "[1, [], \"x\"]"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(value.toString(), text);
}

TEST(Value, SharesTheBytesOfABinary) {
  const KyBinary bytes(std::vector<std::uint8_t>{1, 2, 3});
  const KyValue value(bytes);
  EXPECT_EQ(value.asBinary().data(), bytes.data());
  EXPECT_EQ(value.asBinary(), KyBinary::copyOf(bytes.data(), 3));
  EXPECT_FALSE(bytes == KyBinary(std::vector<std::uint8_t>{1, 2, 4}));
}

TEST(Value, ConvertsToVectors) {
  const auto names = KyConvert<std::vector<std::string>>::from(KyValue::array({"a", "b"}));
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b"}));
  EXPECT_THROW(KyConvert<std::vector<std::string>>::from(KyValue::array({1})), KyError);
}

TEST(Error, SaysWhereItHappened) {
  EXPECT_EQ(KyError("text").toString(), "text");
  EXPECT_EQ(KyError("Module", "method", "text").toString(), "Module.method: text");
  EXPECT_EQ(KyError("Module", "", "text").toString(), "Module: text");
  EXPECT_STREQ(KyError("Module", "method", "text").what(), "text");
}

}  // namespace

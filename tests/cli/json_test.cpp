// SPDX-License-Identifier: Apache-2.0
#include "cli/json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "cli/ky_command.h"

namespace {

using cli::parseJson;
using cli::toJson;
using Ky::KyValue;

std::string complaint(const std::string& text) {
  try {
    parseJson(text);
  } catch (const cli::WrongUse& error) {
    return error.what();
  }
  return "no complaint";
}

TEST(Json, EveryKindOfValueIsRead) {
  EXPECT_EQ(parseJson("null"), KyValue());
  EXPECT_EQ(parseJson("true"), KyValue(true));
  EXPECT_EQ(parseJson("false"), KyValue(false));
  EXPECT_EQ(parseJson("-7"), KyValue(-7));
  EXPECT_EQ(parseJson("0.5"), KyValue(0.5));
  EXPECT_EQ(parseJson("\"text\""), KyValue("text"));
  EXPECT_EQ(parseJson("[]"), KyValue::array());
  EXPECT_EQ(parseJson("[1, [\"two\", 3.0]]"), KyValue::array({1, KyValue::array({"two", 3.0})}));
}

TEST(Json, ANumberWithAPointIsAFloatAndOneWithoutIsAnInt) {
  EXPECT_TRUE(parseJson("2").isInt());
  EXPECT_TRUE(parseJson("2.0").isFloat());
  EXPECT_TRUE(parseJson("2e1").isFloat());
}

TEST(Json, TheIntegersOf64BitsFitAndNoOthers) {
  EXPECT_EQ(parseJson("9223372036854775807").asInt64(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseJson("-9223372036854775808").asInt64(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(complaint("9223372036854775808"),
            "'9223372036854775808': the number 9223372036854775808 does not fit 64 bits");
}

TEST(Json, WhatAValuePrintsIsReadBackTheSame) {
  const KyValue value =
      KyValue::array({KyValue(), true, -3, 0.25, 2.0, "a \"b\" \n", KyValue::array()});
  EXPECT_EQ(parseJson(toJson(value)), value);
}

TEST(Json, WhatJsonHasNoWordForIsPrintedAsWhatComesClosest) {
  EXPECT_EQ(toJson(std::numeric_limits<double>::quiet_NaN()), "null");
  EXPECT_EQ(toJson(Ky::KyBinary::copyOf("abc", 3)), "\"<3 bytes>\"");
  EXPECT_EQ(toJson("\xff"), "\"\ufffd\"");
}

TEST(Json, TextWithoutQuotesIsRefusedWithAHint) {
  EXPECT_EQ(complaint("hello"),
            "'hello' is not JSON; a string needs quotes of its own: '\"text\"'");
  EXPECT_EQ(complaint(""), "'' is not JSON; a string needs quotes of its own: '\"text\"'");
}

TEST(Json, ObjectsAreRefused) {
  EXPECT_EQ(complaint("{\"a\": 1}"),
            "'{\"a\": 1}': there are no objects, {..}, among the robot's values; use arrays");
}

TEST(Json, ArraysMayBeNestedAsDeepAsTheRuntimeTakesAndNoDeeper) {
  const std::string deepest = std::string(32, '[') + std::string(32, ']');
  EXPECT_EQ(parseJson(deepest).toString(), deepest);
  const std::string tooDeep = "[" + deepest + "]";
  EXPECT_EQ(complaint(tooDeep), "'" + tooDeep + "': there are too many arrays inside arrays");
  EXPECT_NE(complaint(std::string(100'000, '[')), "no complaint");
}

}  // namespace

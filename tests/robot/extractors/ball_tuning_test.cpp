// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_tuning.h"

#include <gtest/gtest.h>

#include <limits>

#include "robot/in_process_robot.h"

namespace robot {
namespace {

using Ky::KyValue;

struct Parameter {
  const char* name;
  KyValue first;
  std::vector<KyValue> good;
  std::vector<KyValue> bad;
};

const KyValue kEmpty = KyValue::array();

const std::int64_t kHuge = std::numeric_limits<std::int64_t>::max();

std::vector<KyValue> lists(std::initializer_list<KyValue> values) {
  std::vector<KyValue> result;
  for (const KyValue& value : values) result.push_back(KyValue::array({value}));
  return result;
}

std::vector<KyValue> noNumbers(int least, int most) {
  auto bad = lists({least - 1, most + 1, kHuge, 20.0, "20", true, KyValue(), kEmpty});
  bad.insert(bad.end(), {KyValue(20), kEmpty, KyValue::array({20, 20}), KyValue("20"), KyValue()});
  return bad;
}

std::vector<KyValue> noSwitches() {
  auto bad = lists({0, 1, "true", KyValue()});
  bad.insert(bad.end(), {KyValue(true), kEmpty, KyValue::array({true, false})});
  return bad;
}

std::vector<KyValue> noRanges() {
  return {KyValue::array({7, 60}),
          KyValue::array({360, 360}),
          KyValue::array({20, 19}),
          KyValue::array({20, 381}),
          KyValue::array({20}),
          KyValue::array({20, 30, 40}),
          KyValue::array({20.0, 30.0}),
          KyValue(20),
          KyValue::array({8, kHuge}),
          KyValue::array({-kHuge, 20}),
          kEmpty};
}

const Parameter kParameters[] = {
    {"CY", KyValue::array({125}), lists({0, 90, 255}), noNumbers(0, 255)},
    {"CU", KyValue::array({75}), lists({0, 90, 255}), noNumbers(0, 255)},
    {"CV", KyValue::array({199}), lists({0, 90, 255}), noNumbers(0, 255)},
    {"minRadius", KyValue::array({8}), lists({8, 50, 359}), noNumbers(8, 359)},
    {"sensitivity", KyValue::array({2}), lists({1, 3, 4}), noNumbers(1, 4)},
    {"colorTolerance", KyValue::array({24}), lists({0, 90, 255}), noNumbers(0, 255)},
    {"maxShift", KyValue::array({200}), lists({0, 90, 1000}), noNumbers(0, 1000)},
    {"useTracking", KyValue::array({false}), lists({true, false}), noSwitches()},
    {"multiBall", KyValue::array({false}), lists({true, false}), noSwitches()},
    {"Optimax", KyValue::array({false}), lists({true, false}), noSwitches()},
    {"radiusRange",
     KyValue::array({8, 120}),
     {KyValue::array({10, 60}), KyValue::array({359, 719}), KyValue::array({8, 8})},
     noRanges()},
};

TEST(BallTuning, HasTheParametersOfTheTableAndNoOthers) {
  std::vector<std::string> names;
  for (const Parameter& parameter : kParameters) names.emplace_back(parameter.name);
  EXPECT_EQ(SharedBallTuning::names(), names);
}

TEST(BallTuning, KeepsWhatIsWithinItsRangeAndNothingElse) {
  for (const Parameter& parameter : kParameters) {
    SharedBallTuning tuning;
    EXPECT_EQ(tuning.get(parameter.name), parameter.first) << parameter.name;
    for (const KyValue& value : parameter.good) {
      tuning.set(parameter.name, value);
      EXPECT_EQ(tuning.get(parameter.name), value) << parameter.name;
    }
    for (const KyValue& value : parameter.bad)
      EXPECT_NE(errorText([&] { tuning.set(parameter.name, value); }), "no error")
          << parameter.name << " " << value.toString();
    EXPECT_EQ(tuning.get(parameter.name), parameter.good.back()) << parameter.name;
  }
}

TEST(BallTuning, SaysWhatAParameterTakes) {
  SharedBallTuning tuning;
  EXPECT_EQ(errorText([&] { tuning.set("CY", KyValue::array({256})); }),
            "\"CY\" takes [a whole number from 0 to 255], not [256]");
  EXPECT_EQ(errorText([&] { tuning.set("multiBall", KyValue(true)); }),
            "\"multiBall\" takes [true] or [false], not true");
  EXPECT_EQ(errorText([&] { tuning.set("radiusRange", KyValue::array({10})); }),
            "\"radiusRange\" takes [smallest, largest radius], the smallest from 8 to 359 and the "
            "largest at most 360 more, not [10]");
}

TEST(BallTuning, SaysWhichParametersThereAre) {
  SharedBallTuning tuning;
  const std::string text =
      "there is no parameter \"cy\"; there are CY, CU, CV, minRadius, sensitivity, "
      "colorTolerance, maxShift, useTracking, multiBall, Optimax, radiusRange";
  EXPECT_EQ(errorText([&] { tuning.set("cy", KyValue::array({1})); }), text);
  EXPECT_EQ(errorText([&] { tuning.get("cy"); }), text);
}

TEST(BallTuning, HasOneSmallestRadius) {
  SharedBallTuning tuning;
  tuning.set("radiusRange", KyValue::array({10, 60}));
  EXPECT_EQ(tuning.get("minRadius"), KyValue::array({10}));
  tuning.set("minRadius", KyValue::array({12}));
  EXPECT_EQ(tuning.get("radiusRange"), KyValue::array({12, 60}));
  tuning.set("minRadius", KyValue::array({80}));
  EXPECT_EQ(tuning.get("radiusRange"), KyValue::array({80, 80}));
}

}  // namespace
}  // namespace robot

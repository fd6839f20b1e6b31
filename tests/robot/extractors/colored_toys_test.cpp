// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/colored_toys.h"

#include <gtest/gtest.h>

#include "ky/memory_proxy.h"
#include "robot/camera/field_of_view.h"
#include "robot/camera/generated_scene.h"
#include "robot/in_process_robot.h"
#include "robot/services/memory.h"
#include "support/wait.h"

namespace robot {
namespace {

using Ky::KyValue;

const KyValue kNothing = KyValue::array();
constexpr int kBallMode = 1, kDuckMode = 2;

class ColoredToysTest : public testing::Test {
 protected:
  using Desktop = boost::shared_ptr<Ky::KyBroker>;

  Desktop subscriber(const std::string& name = "Periscope") {
    const Desktop desktop = fRobot.connect();
    desktop->call("KyColoredToysDetection", "subscribe", {name, 0, 1.0f});
    return desktop;
  }
  static void setParam(const Desktop& desktop, const std::string& name, const KyValue& value) {
    desktop->call("KyColoredToysDetection", "setParam", {name, value});
  }
  static void setMode(const Desktop& desktop, int toy, int on) {
    setParam(desktop, "mode", KyValue::array({toy, on}));
  }
  static void unsubscribe(const Desktop& desktop) {
    desktop->call("KyColoredToysDetection", "unsubscribe", {"Periscope"});
  }

  KyValue memory(const std::string& key) { return Ky::KyMemoryProxy(fRobot.broker()).getData(key); }
  bool appears(const std::string& key) {
    return waitUntil([&] { return memory(key) != kNothing; });
  }
  bool vanishes(const std::string& key) {
    return waitUntil([&] { return memory(key) == kNothing; });
  }
  // A later look has seen it too.
  bool stays(const std::string& key) {
    const KyValue before = memory(key);
    return waitUntil([&] { return memory(key) != before; }) && memory(key) != kNothing;
  }

  std::shared_ptr<SharedBallTuning> fTuning = std::make_shared<SharedBallTuning>();
  InProcessRobot fRobot;
  boost::shared_ptr<Memory> fMemory = Ky::KyModule::createModule<Memory>(fRobot.broker());
  boost::shared_ptr<ColoredToys> fModule =
      Ky::KyModule::createModule<ColoredToys>(fRobot.broker(), InProcessRobot::cameras(), fTuning);
};

SceneTruth truthOf(const std::string& name, const KyValue& stamp) {
  const std::int64_t time = stamp[0].asInt64() * 1000000 + stamp[1].asInt64();
  for (const SceneTruth& truth : GeneratedScene(0).truthAt(time))
    if (truth.name == name) return truth;
  return {};
}

TEST_F(ColoredToysTest, FindsTheScenesBall) {
  setMode(subscriber(), kBallMode, 1);
  ASSERT_TRUE(appears("BallDetected"));
  const KyValue found = memory("BallDetected");
  ASSERT_EQ(found[1].size(), 1u);
  const KyValue& ball = found[1][0];
  const SceneTruth truth = truthOf("ball", found[0]);
  ASSERT_EQ(ball.size(), 5u);
  EXPECT_NEAR(ball[2].asFloat(), alphaAt(truth.x), 2 * kHalfWidthAngle / 320);
  EXPECT_NEAR(ball[3].asFloat(), betaAt(truth.y), 2 * kHalfHeightAngle / 240);
  EXPECT_NEAR(ball[4].asFloat(), truth.width * 320 / 2, 1.5);
  EXPECT_EQ(memory("DuckDetected"), kNothing) << "nobody asked for ducks";
}

TEST_F(ColoredToysTest, FindsTheScenesDuckInNineFloats) {
  setMode(subscriber(), kDuckMode, 1);
  ASSERT_TRUE(appears("duck"));
  const KyValue found = memory("duck");
  ASSERT_EQ(found[1].size(), 1u);
  const KyValue& duck = found[1][0];
  ASSERT_EQ(duck.size(), 9u);
  for (const KyValue& element : duck.asArray()) EXPECT_TRUE(element.isFloat());
  const SceneTruth truth = truthOf("duck", found[0]);
  const float left = alphaAt(truth.x - truth.width / 2), right = alphaAt(truth.x + truth.width / 2);
  EXPECT_LT(duck[0].asFloat(), left);
  EXPECT_GT(duck[0].asFloat(), right);
  EXPECT_GT(duck[1].asFloat(), betaAt(truth.y)) << "the head is in the upper half";
  EXPECT_LT(duck[4].asFloat(), betaAt(truth.y)) << "the body in the lower";
  EXPECT_GT(duck[5].asFloat(), duck[3].asFloat()) << "left of the body's centre";
  EXPECT_GT(duck[3].asFloat(), duck[7].asFloat());
  EXPECT_GT(duck[6].asFloat(), duck[4].asFloat()) << "above it";
  EXPECT_GT(duck[4].asFloat(), duck[8].asFloat());
  EXPECT_EQ(memory("BallDetected"), kNothing);
}

TEST_F(ColoredToysTest, WritesDucksForBothKindsOfReaders) {
  const auto desktop = subscriber();
  for (const char* key : {"DuckDetected", "duck"})
    EXPECT_EQ(memory(key), kNothing) << "and not an error, while nobody asks for ducks";
  setMode(desktop, kDuckMode, 1);
  for (const char* key : {"DuckDetected", "duck"}) EXPECT_TRUE(appears(key)) << key;
  setMode(desktop, kDuckMode, 0);
  for (const char* key : {"DuckDetected", "duck"}) EXPECT_TRUE(vanishes(key)) << key;
}

TEST_F(ColoredToysTest, LooksForNothingUntilAToyIsSwitchedOn) {
  const auto desktop = subscriber();
  setMode(desktop, kDuckMode, 1);
  ASSERT_TRUE(appears("DuckDetected"));
  EXPECT_EQ(memory("BallDetected"), kNothing);
  setMode(desktop, kBallMode, 1);
  EXPECT_TRUE(appears("BallDetected"));
  setMode(desktop, kDuckMode, 0);
  EXPECT_TRUE(vanishes("DuckDetected"));
  EXPECT_TRUE(stays("BallDetected"));
}

TEST_F(ColoredToysTest, OneDesktopSwitchingOffDoesNotSwitchOffTheOther) {
  const auto one = subscriber(), two = subscriber();
  setMode(one, kBallMode, 1);
  setMode(two, kBallMode, 1);
  ASSERT_TRUE(appears("BallDetected"));
  setMode(one, kBallMode, 0);
  EXPECT_TRUE(stays("BallDetected"));
  unsubscribe(one);
  EXPECT_TRUE(stays("BallDetected"));
  setMode(two, kBallMode, 0);
  EXPECT_TRUE(vanishes("BallDetected"));
}

TEST_F(ColoredToysTest, WhatADesktopSwitchedOnEndsWithItsSubscription) {
  const auto leaver = subscriber(), stayer = subscriber();
  setMode(leaver, kBallMode, 1);
  setMode(stayer, kDuckMode, 1);
  ASSERT_TRUE(appears("BallDetected"));
  unsubscribe(leaver);
  EXPECT_TRUE(vanishes("BallDetected"));
  EXPECT_TRUE(stays("duck"));
}

TEST_F(ColoredToysTest, WhatADesktopSwitchedOnEndsWhenItIsLost) {
  const auto leaver = subscriber(), stayer = subscriber();
  setMode(leaver, kBallMode, 1);
  setMode(stayer, kDuckMode, 1);
  ASSERT_TRUE(appears("BallDetected"));
  leaver->shutdown();
  EXPECT_TRUE(vanishes("BallDetected"));
  EXPECT_TRUE(stays("duck"));
}

// As a viewer does in which both boxes are ticked and unticked again.
TEST_F(ColoredToysTest, BearsADesktopThatEndsItsOneSubscriptionTwice) {
  const auto desktop = subscriber();
  setMode(desktop, kBallMode, 1);
  desktop->call("KyColoredToysDetection", "subscribe", {"Periscope", 1000, 1.0f});
  setMode(desktop, kDuckMode, 1);
  for (const int toy : {kDuckMode, kBallMode}) {
    EXPECT_NO_THROW(setMode(desktop, toy, 0));
    EXPECT_NO_THROW(unsubscribe(desktop));
  }
  EXPECT_TRUE(vanishes("BallDetected"));
}

TEST_F(ColoredToysTest, SearchesInEveryResolution) {
  const auto desktop = subscriber();
  setMode(desktop, kBallMode, 1);
  for (int resolution = 0; resolution < kResolutions; ++resolution) {
    setParam(desktop, "resolution", KyValue::array({resolution}));
    ASSERT_TRUE(appears("BallDetected")) << resolution;
    EXPECT_TRUE(stays("BallDetected")) << resolution;
  }
}

TEST_F(ColoredToysTest, FollowsTheTuningOfBalls) {
  setMode(subscriber(), kBallMode, 1);
  ASSERT_TRUE(appears("BallDetected"));
  fTuning->set("CV", KyValue::array({20}));
  EXPECT_TRUE(vanishes("BallDetected"));
  fTuning->set("CV", KyValue::array({199}));
  EXPECT_TRUE(appears("BallDetected"));
}

TEST_F(ColoredToysTest, RefusesWhatIsNoParameter) {
  const auto desktop = subscriber();
  const auto refusal = [&](const std::string& name, const KyValue& value) {
    return errorText([&] { setParam(desktop, name, value); });
  };
  const std::string mode = "\"mode\" takes [1 ball or 2 duck, 1 on or 0 off], not ";
  EXPECT_EQ(refusal("mode", KyValue::array({3, 1})), mode + "[3, 1]");
  EXPECT_EQ(refusal("mode", KyValue::array({0, 1})), mode + "[0, 1]");
  EXPECT_EQ(refusal("mode", KyValue::array({1, 2})), mode + "[1, 2]");
  EXPECT_EQ(refusal("mode", KyValue::array({1})), mode + "[1]");
  EXPECT_EQ(refusal("mode", KyValue::array({1, true})), mode + "[1, true]");
  EXPECT_EQ(refusal("mode", 1), mode + "1");
  const std::string resolution = "\"resolution\" takes [0], [1], [2] or [3], not ";
  EXPECT_EQ(refusal("resolution", KyValue::array({4})), resolution + "[4]");
  EXPECT_EQ(refusal("resolution", 1), resolution + "1");
  EXPECT_EQ(refusal("resolution", KyValue::array()), resolution + "[]");
  EXPECT_EQ(refusal("size", KyValue::array({1})),
            "there is no parameter \"size\"; there are mode and resolution");
}

TEST_F(ColoredToysTest, SwitchesToysOnForSubscribersOnly) {
  const auto desktop = fRobot.connect();
  EXPECT_EQ(errorText([&] { setMode(desktop, kBallMode, 1); }),
            "only a subscriber can switch a toy on; subscribe first");
  EXPECT_NO_THROW(setMode(desktop, kBallMode, 0));
}

}  // namespace
}  // namespace robot

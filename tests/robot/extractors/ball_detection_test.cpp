// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_detection.h"

#include <gtest/gtest.h>

#include "ky/memory_proxy.h"
#include "robot/in_process_robot.h"
#include "robot/services/memory.h"
#include "support/wait.h"

namespace robot {
namespace {

using Ky::KyValue;

class BallDetectionTest : public testing::Test {
 protected:
  KyValue balls() { return Ky::KyMemoryProxy(fRobot.broker()).getData("BallDetected"); }

  std::shared_ptr<SharedBallTuning> fTuning = std::make_shared<SharedBallTuning>();
  InProcessRobot fRobot;
  boost::shared_ptr<Memory> fMemory = Ky::KyModule::createModule<Memory>(fRobot.broker());
  boost::shared_ptr<BallDetection> fModule = Ky::KyModule::createModule<BallDetection>(
      fRobot.broker(), InProcessRobot::cameras(), fTuning);
};

TEST_F(BallDetectionTest, PublishesTheTuningForEverybody) {
  const auto one = fRobot.connect(), two = fRobot.connect();
  one->call("KyBallDetection", "setParam", {"radiusRange", KyValue::array({12, 42})});
  EXPECT_EQ(two->call("KyBallDetection", "getParam", {"radiusRange"}), KyValue::array({12, 42}));
  EXPECT_EQ(fTuning->get().largest, 42);
  EXPECT_NE(errorText([&] { one->call("KyBallDetection", "setParam", {"CY", 9}); }), "no error");
  EXPECT_NE(errorText([&] { one->call("KyBallDetection", "getParam", {"Cy"}); }), "no error");
}

TEST_F(BallDetectionTest, FindsTheBallThatItIsTunedToForWhoeverSubscribes) {
  const auto desktop = fRobot.connect();
  EXPECT_EQ(balls(), KyValue::array());
  desktop->call("KyBallDetection", "subscribe", {"me", 0, 1.0f});
  ASSERT_TRUE(waitUntil([&] { return balls().size() == 2; }));
  EXPECT_EQ(balls()[1].size(), 1u);
  desktop->call("KyBallDetection", "setParam", {"CU", KyValue::array({200})});
  EXPECT_TRUE(waitUntil([&] { return balls() == KyValue::array(); }));
}

}  // namespace
}  // namespace robot

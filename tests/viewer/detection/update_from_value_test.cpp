// SPDX-License-Identifier: Apache-2.0
// One source's items are replaced by what its value says.
#include <gtest/gtest.h>

#include "support/viewer_on_robot.h"
#include "tests/viewer/detection/decode.h"

using Ky::KyValue;
using Lines = std::vector<std::string>;

namespace {

class UpdateFromValue : public testing::Test {
 protected:
  UpdateFromValue() {
    for (std::size_t i = 0; i < 4; ++i)
      viewer.model().fAngles[i] = std::array{0.0f, 0.0f, 1.0f, 2.0f}[i];
  }

  Lines shown(const std::string& key) {
    return descriptions(viewer.model().fObjects.at(key).fObjects);
  }

  ViewerOnRobot viewer;
};

KyValue figure(const char* text) {
  return KyValue::array({0.5, 0.5, 20, 2, 0, 0, 0, 0, text});
}

}  // namespace

TEST_F(UpdateFromValue, ReplacesTheItemsOfThatSourceOnly) {
  viewer.module->subscribeLog("a");
  viewer.module->subscribeLog("b");
  viewer.module->updateFromValue("a", KyValue::array({figure("1"), figure("2")}));
  viewer.module->updateFromValue("b", KyValue::array({figure("3")}));
  viewer.module->updateFromValue("a", KyValue::array({figure("4")}));
  EXPECT_EQ(shown("a"), Lines{"4"});
  EXPECT_EQ(shown("b"), Lines{"3"});
  viewer.module->updateFromValue("a", KyValue::array());
  EXPECT_EQ(shown("a"), Lines{});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(UpdateFromValue, UsesTheFramesFieldOfView) {
  viewer.module->subscribeLog("LandmarkDetected");
  viewer.module->updateFromValue("LandmarkDetected", result({landmark(0.25f, 0.5f, 0.1f, 7)}));
  const auto items = listed(viewer.model().fObjects.at("LandmarkDetected").fObjects);
  ASSERT_EQ(items.size(), 1u);
  EXPECT_EQ(items[0].x, 0.25);
  EXPECT_EQ(items[0].y, 0.25);
  EXPECT_EQ(items[0].diameter, 32);
}

TEST_F(UpdateFromValue, EmptiesTheSourceForAValueOfOneElement) {
  for (const char* key : {"LandmarkDetected", "FaceDetected", "LogoDetected", "PictureDetected",
                          "BallDetected", "duck"}) {
    viewer.module->subscribeLog(key);
    viewer.model().fObjects.at(key).fObjects["stale"] = displayObject();
    viewer.module->updateFromValue(key, KyValue::array({1}));
    EXPECT_EQ(shown(key), Lines{}) << key;
  }
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(UpdateFromValue, LogsAValueOfAnotherShapeAndKeepsWhatCameBefore) {
  viewer.module->subscribeLog("a");
  viewer.module->updateFromValue("a", KyValue::array({figure("stale")}));
  viewer.module->updateFromValue("a", KyValue::array({figure("good"), KyValue::array({1})}));
  EXPECT_EQ(shown("a"), Lines{"good"});
  EXPECT_EQ(viewer.log.lines(),
            Lines{"error updateFromValue: Error handling Extractor result :an array of 1 elements "
                  "has no element 1"});
}

TEST_F(UpdateFromValue, EmptiesTheSourceBeforeAValueOfAnotherShapeIsRefused) {
  for (const char* key : {"LandmarkDetected", "a"}) {
    viewer.module->subscribeLog(key);
    viewer.model().fObjects.at(key).fObjects["stale"] = displayObject();
    viewer.module->updateFromValue(key, 7);
    EXPECT_EQ(shown(key), Lines{}) << key;
  }
  EXPECT_EQ(viewer.log.lines().size(), 2u);
}

TEST_F(UpdateFromValue, IgnoresASourceThatIsNoLongerWatched) {
  viewer.module->updateFromValue("gone", KyValue::array({figure("1")}));
  EXPECT_TRUE(viewer.model().fObjects.empty());
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(UpdateFromValue, TakesDuckDetectedForACustomKey) {
  viewer.module->subscribeLog("DuckDetected");
  viewer.module->updateFromValue("DuckDetected", KyValue::array({figure("a duck")}));
  EXPECT_EQ(shown("DuckDetected"), Lines{"a duck"});
  viewer.module->updateFromValue("DuckDetected", result({duck(0, 0)}));
  EXPECT_EQ(viewer.log.lines().size(), 1u);
}

TEST_F(UpdateFromValue, TellsTheRobotsLogOfADuckThatIsNoDuck) {
  const auto logger = viewer.robot.add("KyLogger");
  logger->answer("info", KyValue());
  viewer.module->subscribeLog("duck");
  auto wrong = duck(0, 0).asArray();
  wrong[5] = 1;
  viewer.module->updateFromValue("duck", result({duck(0, 0), wrong, duck(0, 0)}));
  EXPECT_EQ(shown("duck"), Lines{"duck head  1"});
  EXPECT_EQ(viewer.robot.calls(),
            Lines{"KyLogger.info(\"Periscope\", \"left angle for the body should float\")"});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(UpdateFromValue, CallsTheRobotWithoutHoldingTheOverlay) {
  const auto logger = viewer.robot.add("KyLogger");
  std::size_t painted = 0;
  logger->answer("info", [&](const KyValue::Array&) {
    // A paint meanwhile gets at the items; it would wait for ever if the call held the lock.
    const Ky::KyCriticalSection objects(viewer.model().fObjectsMutex);
    const Ky::KyCriticalSection items(viewer.model().fObjects.at("duck").fMutex);
    painted = viewer.model().fObjects.at("duck").fObjects.size();
    return KyValue();
  });
  viewer.module->subscribeLog("duck");
  viewer.module->updateFromValue("duck", result({duck(0, 0), KyValue::array({1})}));
  EXPECT_EQ(painted, 1u);
}

TEST_F(UpdateFromValue, LogsThatTheRobotsLogIsMissing) {
  viewer.module->subscribeLog("duck");
  viewer.module->updateFromValue("duck", result({KyValue::array({1})}));
  ASSERT_EQ(viewer.log.lines().size(), 1u);
  EXPECT_EQ(
      viewer.log.lines()[0].rfind("error updateFromValue: Error handling Extractor result :", 0),
      0u);
}

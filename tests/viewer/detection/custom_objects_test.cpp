// SPDX-License-Identifier: Apache-2.0
// Figures that any program has drawn: the watch, and the poll of the robot's memory.
#include <gtest/gtest.h>

#include "ky/proxy.h"
#include "support/viewer_on_robot.h"
#include "tests/viewer/detection/decode.h"
#include "viewer/detection/objectdisplaysettings_widget.h"

using Ky::KyValue;
using Lines = std::vector<std::string>;

namespace {

// A robot with a memory that can be written.
class CustomObjects : public testing::Test {
 protected:
  CustomObjects() : memory(viewer.robot.add("KyMemory")) {
    memory->answer("getListData", [this](const KyValue::Array& arguments) {
      KyValue::Array answer;
      for (const KyValue& key : arguments.at(0).asArray()) {
        if (stored.count(key.asString()) == 0)
          throw Ky::KyError("there is no value " + key.asString());
        answer.push_back(stored.at(key.asString()));
      }
      return KyValue(answer);
    });
  }

  Lines shown(const std::string& key) {
    return descriptions(viewer.model().fObjects.at(key).fObjects);
  }

  ViewerOnRobot viewer;
  std::map<std::string, KyValue> stored;
  boost::shared_ptr<ScriptedModule> memory;
};

void accept(const boost::shared_ptr<ScriptedModule>& extractor) {
  for (const char* method : {"subscribe", "setParam", "load"}) extractor->answer(method, KyValue());
}

KyValue figure(const char* text) {
  return KyValue::array({0.5, 0.7, 20, 2, 0, 0, 0, 0, text});
}

}  // namespace

TEST_F(CustomObjects, AreDrawnForAnyProgramThatAsks) {
  stored["myObjects"] = KyValue::array({figure("this is a test")});
  viewer.robot.broker()->getProxy("Periscope")->callVoid("subscribeLog", "myObjects");
  viewer.module->updateObjectsValue();
  const auto items = listed(viewer.model().fObjects.at("myObjects").fObjects);
  ASSERT_EQ(items.size(), 1u);
  EXPECT_EQ(items[0].x, 0.5);
  EXPECT_FLOAT_EQ(static_cast<float>(items[0].y), 0.7f);
  EXPECT_EQ(items[0].diameter, 20);
  EXPECT_EQ(items[0].thickness, 2);
  EXPECT_EQ(items[0].shape, 0);
  EXPECT_EQ(items[0].colour, 0xFF000000u);
  EXPECT_EQ(items[0].description, "this is a test");
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CustomObjects, WithoutWatchesAskTheRobotNothing) {
  viewer.module->updateObjectsValue();
  EXPECT_EQ(viewer.robot.calls(), Lines{});
}

// A robot far away is asked for the values alone, not first whether it has a memory.
TEST_F(CustomObjects, CostOneQuestionATick) {
  stored["a"] = KyValue::array({figure("in a")});
  viewer.module->subscribeLog("a");
  const auto memoryProxy = viewer.broker->getProxy("KyMemory", 0);
  const auto sentDuring = [&](auto&& question) {
    constexpr int kTicks = 200;  // so many that a heartbeat hardly counts
    const std::uint64_t before = viewer.broker->statistics().bytesOut;
    for (int i = 0; i < kTicks; ++i) question();
    return viewer.broker->statistics().bytesOut - before;
  };
  const auto oneCall =
      sentDuring([&] { memoryProxy->call<KyValue>("getListData", KyValue::array({"a"})); });
  const auto oneTick = sentDuring([&] { viewer.module->updateObjectsValue(); });
  EXPECT_LT(oneTick, oneCall + oneCall / 2);
}

TEST_F(CustomObjects, AreWatchedOnceHoweverOftenAsked) {
  viewer.module->subscribeLog("a");
  viewer.module->subscribeLog("a");
  EXPECT_EQ(viewer.model().fObjects.size(), 1u);
}

TEST_F(CustomObjects, AreWatchedUnderSoManyKeysAndNoMore) {
  for (int i = 0; i < 256; ++i) viewer.module->subscribeLog("key " + std::to_string(i));
  EXPECT_EQ(viewer.log.lines(), Lines{});
  viewer.module->subscribeLog("one more");
  viewer.module->subscribeLog("key 7");
  viewer.module->subscribeLog("and another");
  EXPECT_EQ(viewer.model().fObjects.size(), 256u);
  EXPECT_EQ(viewer.log.lines(),
            Lines{"warning subscribeLog: The key \"one more\" is not watched: there are 256 keys "
                  "already; switch a detection off, which ends all watches, and ask again"});
}

TEST_F(CustomObjects, MakeRoomForEveryDetection) {
  for (const char* name : {"KyLandMarkDetection", "KyColoredToysDetection", "KyFaceDetection",
                           "KyLogoDetection", "KyVisionRecognition"})
    accept(viewer.robot.add(name));
  for (int i = 0; i < 256; ++i) viewer.module->subscribeLog("key " + std::to_string(i));
  for (const char* kind : {"mark", "ball", "duck", "face", "logo", "picture"})
    EXPECT_TRUE(viewer.module->activateDetection(kind, 1)) << kind;
  EXPECT_EQ(viewer.model().fObjects.size(), 262u);
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CustomObjects, AreSaidToBeTooManyAgainAfterTheWatchesHaveBegunAnew) {
  for (int round = 0; round < 2; ++round) {
    viewer.model().fObjects.clear();
    viewer.log.clear();
    for (int i = 0; i < 258; ++i) viewer.module->subscribeLog("key " + std::to_string(i));
    EXPECT_EQ(viewer.log.lines().size(), 1u) << round;
  }
}

TEST_F(CustomObjects, AreNotWatchedUnderAKeyThatNoMemoryHolds) {
  viewer.module->subscribeLog(std::string(1024, 'k'));
  for (int i = 0; i < 2; ++i) viewer.module->subscribeLog(std::string(1025, 'k'));
  EXPECT_EQ(viewer.model().fObjects.size(), 1u);
  EXPECT_EQ(viewer.log.lines(),
            Lines{"warning subscribeLog: The key \"" + std::string(64, 'k') +
                  "\" is not watched: a key has at most 1024 bytes; choose a shorter one"});
}

TEST_F(CustomObjects, OfAllKeysComeInOneCallInKeyOrder) {
  for (const char* key : {"b", "LandmarkDetected", "a"}) {
    stored[key] = KyValue::array({});
    viewer.module->subscribeLog(key);
  }
  stored["a"] = KyValue::array({figure("in a")});
  stored["b"] = KyValue::array({figure("in b")});
  viewer.module->updateObjectsValue();
  EXPECT_EQ(viewer.robot.calls(),
            Lines{"KyMemory.getListData([\"LandmarkDetected\", \"a\", \"b\"])"});
  EXPECT_EQ(shown("a"), Lines{"in a"});
  EXPECT_EQ(shown("b"), Lines{"in b"});
}

TEST_F(CustomObjects, StayUntilTheirKeySaysOtherwise) {
  viewer.module->subscribeLog("a");
  stored["a"] = KyValue::array({figure("1")});
  viewer.module->updateObjectsValue();
  viewer.module->updateObjectsValue();
  EXPECT_EQ(shown("a"), Lines{"1"});
  stored["a"] = KyValue::array();
  viewer.module->updateObjectsValue();
  EXPECT_EQ(shown("a"), Lines{});
}

TEST_F(CustomObjects, AreNotUpdatedAtAllWhenOneKeyIsUnknown) {
  viewer.module->subscribeLog("a");
  stored["a"] = KyValue::array({figure("old")});
  viewer.module->updateObjectsValue();
  viewer.module->subscribeLog("unknown");
  stored["a"] = KyValue::array({figure("new")});
  viewer.module->updateObjectsValue();
  EXPECT_EQ(shown("a"), Lines{"old"});
  EXPECT_EQ(viewer.log.lines(), Lines{"error updateObjectsValue: Exception while updating object "
                                      "values:there is no value unknown"});
}

TEST_F(CustomObjects, SayThatTheRobotHasNoMemoryAndTryAgain) {
  viewer.module->subscribeLog("a");
  viewer.robot.remove("KyMemory");
  viewer.module->updateObjectsValue();
  viewer.module->updateObjectsValue();
  const Lines lines = viewer.log.lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].rfind("error updateObjectsValue: Exception while updating object values:", 0),
            0u);
}

TEST_F(CustomObjects, OfOneWrongKeyDoNotSpoilTheOthers) {
  for (const char* key : {"a", "b", "c"}) {
    viewer.module->subscribeLog(key);
    stored[key] = KyValue::array({figure(key)});
  }
  stored["b"] = "no figures";
  viewer.module->updateObjectsValue();
  EXPECT_EQ(shown("a"), Lines{"a"});
  EXPECT_EQ(shown("b"), Lines{});
  EXPECT_EQ(shown("c"), Lines{"c"});
  EXPECT_EQ(viewer.log.lines(),
            Lines{"error updateFromValue: Error handling Extractor result :a value of type string "
                  "can't be read as array"});
}

TEST_F(CustomObjects, TakeAsManyValuesAsTheMemoryAnswers) {
  for (const char* key : {"a", "b"}) viewer.module->subscribeLog(key);
  memory->answer("getListData", KyValue::array({KyValue::array({figure("1")})}));
  viewer.module->updateObjectsValue();
  EXPECT_EQ(shown("a"), Lines{"1"});
  EXPECT_EQ(shown("b"), Lines{});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CustomObjects, RefuseAnAnswerThatIsNoneToTheQuestion) {
  viewer.module->subscribeLog("a");
  for (const KyValue& answer :
       {KyValue(), KyValue(7), KyValue("text"), KyValue::array({KyValue(), KyValue()})}) {
    memory->answer("getListData", answer);
    viewer.log.clear();
    viewer.module->updateObjectsValue();
    ASSERT_EQ(viewer.log.lines().size(), 1u) << answer.toString();
    EXPECT_EQ(viewer.log.lines()[0].rfind(
                  "error updateObjectsValue: Exception while updating object values:", 0),
              0u);
  }
}

TEST_F(CustomObjects, MayBeUnwatchedWhileTheRobotIsAsked) {
  viewer.module->subscribeLog("a");
  memory->answer("getListData", [this](const KyValue::Array&) {
    viewer.model().removeObjectWatch("a");
    return KyValue::array({KyValue::array({figure("late")})});
  });
  viewer.module->updateObjectsValue();
  EXPECT_TRUE(viewer.model().fObjects.empty());
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CustomObjects, HaveAnEmptyPanel) {
  ObjectDisplaySettingsWidget panel(viewer.module, nullptr);
  EXPECT_TRUE(panel.children().isEmpty());
}

// SPDX-License-Identifier: Apache-2.0
// Switching extractors on and off: what reaches the robot, in which order, and what is watched.
#include <gtest/gtest.h>

#include "support/viewer_on_robot.h"

using Ky::KyValue;
using Lines = std::vector<std::string>;

namespace {

// Every extractor there is, accepting everything.
class Activation : public testing::Test {
 protected:
  Activation() {
    for (const char* name : {"KyLandMarkDetection", "KyColoredToysDetection", "KyFaceDetection",
                             "KyLogoDetection", "KyVisionRecognition"}) {
      const auto extractor = viewer.robot.add(name);
      for (const char* method : {"subscribe", "unsubscribe", "setParam", "load"})
        extractor->answer(method, KyValue());
      extractors[name] = extractor;
    }
    viewer.robot.takeCalls();
  }

  Lines calls(const std::string& kind, int action) {
    viewer.robot.takeCalls();
    EXPECT_TRUE(viewer.module->activateDetection(kind, action)) << kind;
    return viewer.robot.takeCalls();
  }

  Lines watched() {
    Lines keys;
    for (const auto& [key, manager] : viewer.model().fObjects) keys.push_back(key);
    return keys;
  }

  // What the module's end unsubscribes: its list of active extractors.
  Lines unsubscribedAtTheEnd() {
    for (const char* name : {"KyBallDetection", "KyDuckDetection"})
      viewer.robot.add(name)->answer("unsubscribe", KyValue());
    viewer.robot.takeCalls();
    viewer.module.reset();
    viewer.broker->unregisterModule("Periscope");
    Lines names;
    for (const std::string& call : viewer.robot.takeCalls())
      if (call.find("KyVideoDevice") == std::string::npos) names.push_back(call);
    return names;
  }

  ViewerOnRobot viewer;
  std::map<std::string, boost::shared_ptr<ScriptedModule>> extractors;
};

struct KindCase {
  const char* kind;
  Lines on;
  Lines off;
  const char* watched;
};

const std::vector<KindCase>& kinds() {
  static const std::vector<KindCase> cases = {
      {"mark",
       {"KyLandMarkDetection.subscribe(\"Periscope\", 1000, 1)"},
       {"KyLandMarkDetection.unsubscribe(\"Periscope\")"},
       "LandmarkDetected"},
      {"ball",
       {"KyColoredToysDetection.subscribe(\"Periscope\", 100, 1)",
        "KyColoredToysDetection.setParam(\"resolution\", [1])",
        "KyColoredToysDetection.setParam(\"mode\", [1, 1])"},
       {"KyColoredToysDetection.setParam(\"mode\", [1, 0])",
        "KyColoredToysDetection.unsubscribe(\"Periscope\")"},
       "BallDetected"},
      {"duck",
       {"KyColoredToysDetection.subscribe(\"Periscope\", 1000, 1)",
        "KyColoredToysDetection.setParam(\"resolution\", [1])",
        "KyColoredToysDetection.setParam(\"mode\", [2, 1])"},
       {"KyColoredToysDetection.setParam(\"mode\", [2, 0])",
        "KyColoredToysDetection.unsubscribe(\"Periscope\")"},
       "DuckDetected"},
      {"face",
       {"KyFaceDetection.subscribe(\"Periscope\", 500, 0)"},
       {"KyFaceDetection.unsubscribe(\"Periscope\")"},
       "FaceDetected"},
      {"logo",
       {"KyLogoDetection.subscribe(\"Periscope\", 500, 0.5)"},
       {"KyLogoDetection.unsubscribe(\"Periscope\")"},
       "LogoDetected"},
      {"picture",
       {"KyVisionRecognition.subscribe(\"Periscope\", 500, 0.5)", "KyVisionRecognition.load()"},
       {"KyVisionRecognition.unsubscribe(\"Periscope\")"},
       "PictureDetected"},
  };
  return cases;
}

}  // namespace

TEST_F(Activation, SubscribesEachKindInItsOwnWayAndWatchesItsKey) {
  for (const KindCase& wanted : kinds()) {
    EXPECT_EQ(calls(wanted.kind, 1), wanted.on) << wanted.kind;
    EXPECT_EQ(watched(), Lines{wanted.watched});
    EXPECT_EQ(calls(wanted.kind, 0), wanted.off) << wanted.kind;
    EXPECT_EQ(watched(), Lines{});
  }
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(Activation, SendsPeriodsAsIntsAndPrecisionsAsFloats) {
  Ky::KyValue::Array sent;
  extractors["KyFaceDetection"]->answer("subscribe", [&](const KyValue::Array& arguments) {
    sent = arguments;
    return KyValue();
  });
  calls("face", 1);
  ASSERT_EQ(sent.size(), 3u);
  EXPECT_TRUE(sent[0].isString());
  EXPECT_TRUE(sent[1].isInt());
  EXPECT_TRUE(sent[2].isFloat());
}

TEST_F(Activation, OfAnUnknownKindSucceedsWithoutAWord) {
  for (const char* kind : {"visionToolbox", "Ball", "", "ball "})
    for (const int action : {-1, 0, 1, 2}) EXPECT_EQ(calls(kind, action), Lines{}) << kind;
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(Activation, RefusesAnyOtherAction) {
  for (const int action : {2, -2, 100}) {
    EXPECT_FALSE(viewer.module->activateDetection("ball", action));
    EXPECT_EQ(viewer.log.lines(),
              Lines{"error activateDetection: Error in Module::activateDetection. "});
    viewer.log.clear();
  }
  EXPECT_EQ(viewer.robot.calls(), Lines{});
}

TEST_F(Activation, OfBallsAndDucksSubscribesTheirSharedExtractorTwice) {
  calls("ball", 1);
  calls("duck", 1);
  EXPECT_EQ(watched(), (Lines{"BallDetected", "DuckDetected"}));
  EXPECT_EQ(unsubscribedAtTheEnd(), (Lines{"KyBallDetection.unsubscribe(\"Periscope\")",
                                           "KyDuckDetection.unsubscribe(\"Periscope\")"}));
}

TEST_F(Activation, TwiceIsListedTwiceAndRemovedAtOnce) {
  calls("face", 1);
  calls("logo", 1);
  calls("face", 1);
  calls("face", 0);
  EXPECT_EQ(unsubscribedAtTheEnd(), Lines{"KyLogoDetection.unsubscribe(\"Periscope\")"});
}

TEST_F(Activation, TwiceIsUnsubscribedTwiceAtTheEnd) {
  calls("face", 1);
  calls("mark", 1);
  calls("face", 1);
  EXPECT_EQ(unsubscribedAtTheEnd(), (Lines{"KyFaceDetection.unsubscribe(\"Periscope\")",
                                           "KyLandMarkDetection.unsubscribe(\"Periscope\")",
                                           "KyFaceDetection.unsubscribe(\"Periscope\")"}));
}

TEST_F(Activation, EndingOneKindClearsTheWholeOverlayAndEveryWatch) {
  calls("ball", 1);
  calls("face", 1);
  viewer.module->subscribeLog("myObjects");
  viewer.model().fObjects["BallDetected"].fObjects["a"] = displayObject();
  calls("face", 0);
  EXPECT_EQ(watched(), Lines{});
  // The others stay active on the robot and need to be switched on again to be seen.
  EXPECT_EQ(unsubscribedAtTheEnd(), Lines{"KyBallDetection.unsubscribe(\"Periscope\")"});
}

TEST_F(Activation, AsksTheLauncherWhetherTheRobotHasAnExtractor) {
  const auto launcher = viewer.robot.add("KyLauncher");
  launcher->answer("isModulePresent", [](const KyValue::Array& arguments) {
    return KyValue(arguments.at(0).asString() == "KyFaceDetection");
  });
  const std::pair<const char*, const char*> kAsked[] = {
      {"mark", "KyLandMarkDetection"},    {"ball", "KyColoredToysDetection"},
      {"duck", "KyColoredToysDetection"}, {"face", "KyFaceDetection"},
      {"logo", "KyLogoDetection"},        {"picture", "KyVisionRecognition"}};
  for (const auto& [kind, module] : kAsked) {
    viewer.robot.takeCalls();
    EXPECT_EQ(viewer.module->activateDetection(kind, -1), std::string(kind) == "face");
    EXPECT_EQ(viewer.robot.takeCalls(),
              Lines{std::string("KyLauncher.isModulePresent(\"") + module + "\")"});
  }
  EXPECT_EQ(watched(), Lines{});
  EXPECT_EQ(viewer.log.lines(), Lines{});
  EXPECT_EQ(unsubscribedAtTheEnd(), Lines{});
}

TEST_F(Activation, WithoutALauncherTakesExtractorsForMissing) {
  EXPECT_FALSE(viewer.module->activateDetection("face", -1));
  ASSERT_EQ(viewer.log.lines().size(), 1u);
  EXPECT_EQ(viewer.log.lines()[0].rfind(
                "error activateDetection: Error in Module::activateDetection. ", 0),
            0u);
}

TEST_F(Activation, FailsForAnExtractorThatIsNotThere) {
  viewer.robot.remove("KyFaceDetection");
  EXPECT_FALSE(viewer.module->activateDetection("face", 1));
  EXPECT_FALSE(viewer.module->activateDetection("face", 0));
  EXPECT_EQ(viewer.log.lines().size(), 2u);
  EXPECT_EQ(watched(), Lines{});
}

namespace {

ScriptedModule::Answer failing(const std::string& text) {
  return [text](const KyValue::Array&) -> KyValue { throw Ky::KyError(text); };
}

}  // namespace

TEST_F(Activation, StopsAtTheFailingStepAndUndoesNothing) {
  extractors["KyColoredToysDetection"]->answer("setParam", failing("toy broke"));
  viewer.robot.takeCalls();
  EXPECT_FALSE(viewer.module->activateDetection("ball", 1));
  EXPECT_EQ(viewer.robot.takeCalls(),
            (Lines{"KyColoredToysDetection.subscribe(\"Periscope\", 100, 1)",
                   "KyColoredToysDetection.setParam(\"resolution\", [1])"}));
  EXPECT_EQ(viewer.log.lines(),
            Lines{"error activateDetection: Error in Module::activateDetection. toy broke"});
  EXPECT_EQ(watched(), Lines{});
  // Listed before the step that failed.
  EXPECT_EQ(unsubscribedAtTheEnd(), Lines{"KyBallDetection.unsubscribe(\"Periscope\")"});
}

TEST_F(Activation, WatchesAPictureBeforeItsDatabaseIsLoaded) {
  extractors["KyVisionRecognition"]->answer("load", failing("no database"));
  EXPECT_FALSE(viewer.module->activateDetection("picture", 1));
  EXPECT_EQ(watched(), Lines{"PictureDetected"});
  EXPECT_EQ(unsubscribedAtTheEnd(), Lines{"KyVisionRecognition.unsubscribe(\"Periscope\")"});
}

TEST_F(Activation, KeepsTheWatchWhenTheExtractorRefusesToEnd) {
  calls("mark", 1);
  extractors["KyLandMarkDetection"]->answer("unsubscribe", failing("busy"));
  EXPECT_FALSE(viewer.module->activateDetection("mark", 0));
  EXPECT_EQ(watched(), Lines{"LandmarkDetected"});
  EXPECT_EQ(viewer.log.lines(),
            Lines{"error activateDetection: Error in Module::activateDetection. busy"});
}

TEST_F(Activation, DoesNotUnsubscribeWhenTheToyCannotBeSwitchedOff) {
  calls("duck", 1);
  extractors["KyColoredToysDetection"]->answer("setParam", failing("stuck"));
  viewer.robot.takeCalls();
  EXPECT_FALSE(viewer.module->activateDetection("duck", 0));
  EXPECT_EQ(viewer.robot.takeCalls(), Lines{"KyColoredToysDetection.setParam(\"mode\", [2, 0])"});
  EXPECT_EQ(watched(), Lines{"DuckDetected"});
}

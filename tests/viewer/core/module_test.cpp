// SPDX-License-Identifier: Apache-2.0
// The viewer's module: how it is built, described and destroyed. What its other methods do is
// tested with the folders in which they are defined.
#include "viewer/core/module.h"

#include <gtest/gtest.h>

#include "support/log_capture.h"
#include "support/test_robot.h"
#include "viewer/core/videorecordermodel.h"

namespace {

using Lines = std::vector<std::string>;

// A module on a robot, and its end.
struct Plugged {
  void plug() {
    broker = robot.connect();
    module = Ky::KyModule::createModule<Module>(broker);
    model = module->model();
  }
  // Subscribes to the camera under the name that the robot gives, "viewer_1".
  void subscribe() {
    robot.addVideoDevice();
    plug();
    module->askForVIM();
  }
  void record() { model->fVideoRecorder->fIsRecording = true; }
  // The calls that the module's end sends to the robot.
  Lines unplug() {
    robot.takeCalls();
    log.clear();
    module.reset();
    broker->shutdown();
    return robot.takeCalls();
  }
  // Gives the robot an extractor and switches it on.
  boost::shared_ptr<ScriptedModule> addExtractor(const std::string& name) {
    auto extractor = robot.add(name);
    extractor->answer("subscribe", Ky::KyValue());
    extractor->answer("unsubscribe", Ky::KyValue());
    return extractor;
  }

  LogCapture log;
  TestRobot robot;
  boost::shared_ptr<Ky::KyBroker> broker;
  boost::shared_ptr<Module> module;
  boost::shared_ptr<Model> model;
};

Ky::KyValue failing(const Ky::KyValue::Array&) {
  throw Ky::KyError("out of order");
}

bool beginsWith(const std::string& text, const std::string& start) {
  return text.rfind(start, 0) == 0;
}

}  // namespace

TEST(Module, IsCalledPeriscope) {
  Plugged viewer;
  viewer.subscribe();
  EXPECT_EQ(viewer.module->getName(), "Periscope");
  EXPECT_EQ(viewer.module->getModuleDescription(),
            "This module belongs to the Periscope of Lookout.");
}

TEST(Module, IsKeptAliveByItsBroker) {
  Plugged viewer;
  viewer.subscribe();
  const boost::weak_ptr<Module> module = viewer.module;
  viewer.module.reset();
  EXPECT_FALSE(module.expired());
  viewer.broker->shutdown();
  EXPECT_TRUE(module.expired());
}

TEST(Module, PublishesOneMethodOfItsOwn) {
  Plugged viewer;
  viewer.subscribe();
  int own = 0;
  for (const auto& method : viewer.module->methods()) {
    if (method.name == "subscribeLog") ++own;
  }
  EXPECT_EQ(own, 1);
  EXPECT_EQ(viewer.module->methods().size(),
            ScriptedModule(viewer.broker, "Plain", nullptr).methods().size() + 1);
}

TEST(Module, DescribesItsMethodToTheWholeRobot) {
  Plugged viewer;
  viewer.subscribe();
  const auto help = viewer.robot.broker()
                        ->getProxy("Periscope")
                        ->call<Ky::KyValue>("getMethodHelp", "subscribeLog");
  EXPECT_EQ(help[0].asString(), "subscribeLog");
  EXPECT_EQ(help[1].asString(),
            "asks lookout to display objects from KyMemory. \n The object shall be an array of "
            "arrays of 9 values : [ float x [0,1] , float y [0,1] , int diameter , int thickness, "
            "int shape, int red, int green, int blue , string description ].\n for instance : "
            "[[0.5,0.7,20,2,0,0,0,0, \"this is a test\"]] , list of shapes available : 0: circle, "
            "1: cross, 2: square");
  EXPECT_EQ(help[2],
            Ky::KyValue::array({Ky::KyValue::array({"strLogName", "string", "name in KyMemory"})}));
  EXPECT_EQ(help[3][1].asString(), "nothing");
}

TEST(Module, WatchesAKeyForAnyProgramOfTheRobot) {
  Plugged viewer;
  viewer.subscribe();
  viewer.robot.broker()->getProxy("Periscope")->callVoid("subscribeLog", "myObjects");
  const Ky::KyCriticalSection guard(viewer.model->fObjectsMutex);
  EXPECT_EQ(viewer.model->fObjects.count("myObjects"), 1U);
}

TEST(Module, SubscribesWithTheModelsSettings) {
  Plugged viewer;
  viewer.robot.addVideoDevice();
  viewer.plug();
  viewer.model->fResolution = 2;
  viewer.model->fColorSpace = 0;
  viewer.model->fFps = 15;
  viewer.robot.takeCalls();
  viewer.module->askForVIM();
  EXPECT_EQ(viewer.robot.calls(), Lines({"KyVideoDevice.subscribe(\"\", 2, 0, 15)"}));
}

TEST(Module, KeepsTheNameThatTheRobotChose) {
  Plugged viewer;
  viewer.subscribe();
  EXPECT_EQ(viewer.robot.takeCalls(), Lines({"KyVideoDevice.subscribe(\"\", 0, 9, 5)"}));
  viewer.module->askForVIM();
  EXPECT_EQ(viewer.robot.calls(), Lines({"KyVideoDevice.subscribe(\"viewer_1\", 0, 9, 5)"}));
}

TEST(Module, LogsASubscriptionThatFailsAndKeepsItsName) {
  Plugged viewer;
  const auto device = viewer.robot.addVideoDevice();
  viewer.plug();
  viewer.module->askForVIM();
  device->answer("subscribe", failing);
  viewer.module->askForVIM();
  EXPECT_EQ(viewer.log.lines(),
            Lines({"error askForVIM: Error while getting proxy on KyVideoDevice: out of order"}));
  EXPECT_EQ(viewer.unplug(), Lines({"KyVideoDevice.unsubscribe(\"viewer_1\")"}));
}

TEST(Module, WorksWithoutAVideoDevice) {
  Plugged viewer;
  viewer.plug();
  const Lines lines = viewer.log.lines();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(beginsWith(lines[0], "error Module: Error while getting proxy on KyVideoDevice: "))
      << lines[0];
  viewer.robot.takeCalls();
  viewer.module->askForVIM();
  viewer.module->getNext();
  EXPECT_TRUE(viewer.robot.calls().empty());
  EXPECT_EQ(viewer.log.lines().size(), 1U);
  EXPECT_TRUE(viewer.unplug().empty());
  EXPECT_TRUE(viewer.log.lines().empty());
}

TEST(Module, UnsubscribesAtItsEnd) {
  Plugged viewer;
  viewer.subscribe();
  EXPECT_EQ(viewer.unplug(), Lines({"KyVideoDevice.unsubscribe(\"viewer_1\")"}));
  EXPECT_TRUE(viewer.log.lines().empty());
}

TEST(Module, LogsAnUnsubscriptionThatFails) {
  Plugged viewer;
  const auto device = viewer.robot.addVideoDevice();
  viewer.plug();
  device->answer("unsubscribe", failing);
  EXPECT_EQ(viewer.unplug(), Lines({"KyVideoDevice.unsubscribe(\"\")"}));
  EXPECT_EQ(viewer.log.lines(),
            Lines({"error ~Module: Fail to unsubscribe from KyVideoDevice: out of order"}));
}

TEST(Module, UnsubscribesFromItsExtractorsInTheirOrder) {
  Plugged viewer;
  viewer.subscribe();
  viewer.addExtractor("KyLandMarkDetection");
  viewer.addExtractor("KyFaceDetection");
  viewer.module->activateDetection("face", 1);
  viewer.module->activateDetection("mark", 1);
  const Lines calls = viewer.unplug();
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0], "KyVideoDevice.unsubscribe(\"viewer_1\")");
  EXPECT_EQ(calls[1], "KyFaceDetection.unsubscribe(\"Periscope\")");
  EXPECT_EQ(calls[2], "KyLandMarkDetection.unsubscribe(\"Periscope\")");
}

TEST(Module, UnsubscribesOnceForEveryEntryOfOneExtractor) {
  Plugged viewer;
  viewer.subscribe();
  viewer.addExtractor("KyFaceDetection");
  viewer.module->activateDetection("face", 1);
  viewer.module->activateDetection("face", 1);
  EXPECT_EQ(viewer.unplug(), Lines({"KyVideoDevice.unsubscribe(\"viewer_1\")",
                                    "KyFaceDetection.unsubscribe(\"Periscope\")",
                                    "KyFaceDetection.unsubscribe(\"Periscope\")"}));
}

TEST(Module, GoesOnWhenAnExtractorFailsAtItsEnd) {
  Plugged viewer;
  viewer.subscribe();
  const auto faces = viewer.addExtractor("KyFaceDetection");
  viewer.addExtractor("KyLandMarkDetection");
  viewer.module->activateDetection("face", 1);
  viewer.module->activateDetection("mark", 1);
  faces->answer("unsubscribe", failing);
  EXPECT_EQ(viewer.unplug().back(), "KyLandMarkDetection.unsubscribe(\"Periscope\")");
  EXPECT_EQ(viewer.log.lines(), Lines({"error ~Module: out of order"}));
}

TEST(Module, StopsARunningRecordingAtItsEnd) {
  Plugged viewer;
  viewer.subscribe();
  viewer.robot.add("KyVideoRecorder")->answer("stopRecording", Ky::KyValue());
  viewer.record();
  EXPECT_EQ(viewer.unplug(),
            Lines({"KyVideoDevice.unsubscribe(\"viewer_1\")", "KyVideoRecorder.stopRecording()"}));
  EXPECT_TRUE(viewer.log.lines().empty());
}

TEST(Module, LeavesTheRecorderAloneWhenNothingIsRecorded) {
  Plugged viewer;
  viewer.subscribe();
  viewer.robot.add("KyVideoRecorder")->answer("stopRecording", Ky::KyValue());
  EXPECT_EQ(viewer.unplug(), Lines({"KyVideoDevice.unsubscribe(\"viewer_1\")"}));
}

TEST(Module, EndsWithoutARecorderModel) {
  Plugged viewer;
  viewer.subscribe();
  viewer.model->fVideoRecorder.reset();
  EXPECT_EQ(viewer.unplug().size(), 1U);
}

TEST(Module, LogsARecordingThatCannotBeStopped) {
  Plugged viewer;
  viewer.subscribe();
  viewer.robot.add("KyVideoRecorder")->answer("stopRecording", failing);
  viewer.robot.add("KyVisionToolbox")->answer("stopVideoRecord", Ky::KyValue());
  viewer.record();
  EXPECT_EQ(viewer.unplug().back(), "KyVideoRecorder.stopRecording()") << "no toolbox";
  EXPECT_EQ(viewer.log.lines(),
            Lines({"error ~Module: Unable to stop video record: out of order"}));
}

TEST(Module, StopsTheRecordingThroughTheToolboxWithoutARecorder) {
  Plugged viewer;
  viewer.subscribe();
  viewer.robot.add("KyVisionToolbox")->answer("stopVideoRecord", Ky::KyValue());
  viewer.record();
  EXPECT_EQ(viewer.unplug().back(), "KyVisionToolbox.stopVideoRecord()");
  const Lines lines = viewer.log.lines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(
      beginsWith(lines[0], "warning ~Module: Error while getting proxy on KyVideoRecorder: "))
      << lines[0];
  EXPECT_EQ(lines[1], "warning ~Module: Trying to use KyVisionToolbox instead...");
}

TEST(Module, LogsAToolboxThatCannotStopTheRecording) {
  Plugged viewer;
  viewer.subscribe();
  viewer.robot.add("KyVisionToolbox")->answer("stopVideoRecord", failing);
  viewer.record();
  viewer.unplug();
  ASSERT_EQ(viewer.log.lines().size(), 3U);
  EXPECT_EQ(viewer.log.lines()[2], "error ~Module: Unable to stop video record: out of order");
}

TEST(Module, LogsThatThereIsNeitherRecorderNorToolbox) {
  Plugged viewer;
  viewer.subscribe();
  viewer.record();
  viewer.unplug();
  const Lines lines = viewer.log.lines();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_TRUE(beginsWith(lines[2], "error ~Module: Error while getting proxy on KyVisionToolbox: "))
      << lines[2];
}

TEST(Module, EndsWhenItsRobotHasGone) {
  Plugged viewer;
  viewer.subscribe();
  viewer.record();
  viewer.robot.broker()->shutdown();
  viewer.unplug();
  const Lines lines = viewer.log.lines();
  ASSERT_FALSE(lines.empty());
  EXPECT_TRUE(beginsWith(lines[0], "error ~Module: Fail to unsubscribe from KyVideoDevice: "))
      << lines[0];
}

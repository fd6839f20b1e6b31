// SPDX-License-Identifier: Apache-2.0
// The calls that the typed proxies make.
#include <gtest/gtest.h>

#include "ky/logger_proxy.h"
#include "ky/memory_proxy.h"
#include "ky/photo_capture_proxy.h"
#include "ky/video_recorder_proxy.h"
#include "ky/vision_toolbox_proxy.h"
#include "support/test_robot.h"

using namespace Ky;

namespace {

TEST(Proxies, CallTheRobotsMemory) {
  TestRobot robot;
  const auto memory = robot.add("KyMemory");
  memory->answer("insertData", KyValue());
  memory->answer("removeData", KyValue());
  memory->answer("getData", 7);
  memory->answer("getListData", KyValue::array({7, 8}));
  memory->answer("getDataList", KyValue::array({"a", "b"}));
  KyMemoryProxy proxy(robot.connect());
  proxy.insertData("a", KyValue::array({1}));
  EXPECT_EQ(proxy.getData("a"), KyValue(7));
  EXPECT_EQ(proxy.getListData(KyValue::array({"a", "b"})), KyValue::array({7, 8}));
  EXPECT_EQ(proxy.getDataList("x"), (std::vector<std::string>{"a", "b"}));
  proxy.removeData("a");
  const std::vector<std::string> calls = {
      R"(KyMemory.insertData("a", [1]))", R"(KyMemory.getData("a"))",
      R"(KyMemory.getListData(["a", "b"]))", R"(KyMemory.getDataList("x"))",
      R"(KyMemory.removeData("a"))"};
  EXPECT_EQ(robot.calls(), calls);
}

TEST(Proxies, CallTheRobotsLogger) {
  TestRobot robot;
  const auto logger = robot.add("KyLogger");
  for (const char* level : {"error", "warn", "info", "debug"}) logger->answer(level, KyValue());
  KyLoggerProxy proxy(robot.connect());
  proxy.error("M", "1");
  proxy.warn("M", "2");
  proxy.info("M", "3");
  proxy.debug("M", "4");
  const std::vector<std::string> calls = {
      R"(KyLogger.error("M", "1"))", R"(KyLogger.warn("M", "2"))", R"(KyLogger.info("M", "3"))",
      R"(KyLogger.debug("M", "4"))"};
  EXPECT_EQ(robot.calls(), calls);
}

TEST(Proxies, CallTheServicesThatRecord) {
  TestRobot robot;
  const KyValue recorded = KyValue::array({150, "/home/tam/a.avi"});
  robot.add("KyPhotoCapture")->answer("takePicture", "file");
  const KyValue state = KyValue::array({true, 7, "/home/tam/a.avi", ""});
  const auto recorder = robot.add("KyVideoRecorder");
  recorder->answer("startRecording", "/home/tam/a.avi");
  recorder->answer("stopRecording", recorded);
  recorder->answer("getState", state);
  recorder->answer("takeOver", true);
  const auto toolbox = robot.add("KyVisionToolbox");
  toolbox->answer("takePicture", KyValue());
  toolbox->answer("startVideoRecord", KyValue());
  toolbox->answer("stopVideoRecord", recorded);
  const auto broker = robot.connect();
  EXPECT_EQ(KyPhotoCaptureProxy(broker).takePicture("f", "n"), KyValue("file"));
  EXPECT_EQ(KyVideoRecorderProxy(broker).startRecording("f", "n"), KyValue("/home/tam/a.avi"));
  EXPECT_EQ(KyVideoRecorderProxy(broker).getState(), state);
  EXPECT_TRUE(KyVideoRecorderProxy(broker).takeOver("p"));
  EXPECT_EQ(KyVideoRecorderProxy(broker).stopRecording(), recorded);
  KyVisionToolboxProxy(broker).takePicture();
  KyVisionToolboxProxy(broker).startVideoRecord("n");
  EXPECT_EQ(KyVisionToolboxProxy(broker).stopVideoRecord(), recorded);
  const std::vector<std::string> calls = {R"(KyPhotoCapture.takePicture("f", "n"))",
                                          R"(KyVideoRecorder.startRecording("f", "n"))",
                                          R"(KyVideoRecorder.getState())",
                                          R"(KyVideoRecorder.takeOver("p"))",
                                          R"(KyVideoRecorder.stopRecording())",
                                          R"(KyVisionToolbox.takePicture())",
                                          R"(KyVisionToolbox.startVideoRecord("n"))",
                                          R"(KyVisionToolbox.stopVideoRecord())"};
  EXPECT_EQ(robot.calls(), calls);
}

TEST(Proxies, ThrowWhereTheirModuleIsMissing) {
  TestRobot robot;
  const auto broker = robot.connect();
  EXPECT_THROW(KyMemoryProxy{broker}, KyError);
  EXPECT_THROW(KyLoggerProxy{broker}, KyError);
  EXPECT_THROW(KyPhotoCaptureProxy{broker}, KyError);
  EXPECT_THROW(KyVideoRecorderProxy{broker}, KyError);
  EXPECT_THROW(KyVisionToolboxProxy{broker}, KyError);
}

}  // namespace

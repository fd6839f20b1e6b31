// SPDX-License-Identifier: Apache-2.0
// What a robot promises about its images is enforced where they arrive.
#include "ky/video_device_proxy.h"

#include <gtest/gtest.h>

#include "support/test_robot.h"

using namespace Ky;

namespace {

KyValue record(KyValue width, KyValue height, KyValue colorSpace, KyValue pixels) {
  return KyValue::array(
      {std::move(width), std::move(height), 2, std::move(colorSpace), 1, 2, std::move(pixels), 0});
}

KyBinary bytes(std::size_t size) {
  return KyBinary(std::vector<std::uint8_t>(size));
}

struct Case {
  const char* name;
  KyValue image;
  const char* error;  // part of it; empty: passes
};

TEST(VideoDeviceProxy, LetsOnlyUsableImageRecordsPass) {
  TestRobot robot;
  const auto device = robot.addVideoDevice();
  KyVideoDeviceProxy proxy(robot.connect());
  const Case cases[] = {
      {"right", record(4, 2, 9, bytes(16)), ""},
      {"longer than needed", record(4, 2, 9, bytes(17)), ""},
      {"too short", record(4, 2, 9, bytes(15)), "holds 15 bytes of pixels"},
      {"too short, grey", record(4, 2, 0, bytes(7)), "need 8"},
      {"too short, 4:4:4", record(4, 2, 10, bytes(23)), "need 24"},
      {"unknown colour space", record(4, 2, 13, bytes(0)), ""},
      {"colour space beyond int", record(4, 2, 1LL << 40, bytes(0)), ""},
      {"largest", record(1280, 960, 9, bytes(1280 * 960 * 2)), ""},
      {"too wide", record(1281, 2, 9, bytes(16)), "width of 1281"},
      {"too high", record(4, 961, 9, bytes(16)), "height of 961"},
      {"negative", record(-4, 2, 9, bytes(16)), "width of -4"},
      {"far too wide", record(1LL << 40, 2, 9, bytes(16)), "width of"},
      {"too wide beside a wrong type", record(5000, "x", 9, bytes(16)), "width of 5000"},
      {"empty", record(0, 0, 9, bytes(0)), ""},
      {"wrong types", record("4", 2.5, "9", "pixels"), ""},
      {"short record", KyValue::array({1, 2, 3}), ""},
      {"no array", KyValue(7), ""},
      {"nothing", KyValue(), ""},
  };
  for (const auto& [name, image, error] : cases) {
    device->answer("getImageRemote", image);
    try {
      EXPECT_EQ(proxy.getImageRemote("viewer_1"), image) << name;
      EXPECT_STREQ(error, "") << name;
    } catch (const KyError& thrown) {
      EXPECT_STRNE(error, "") << name << ": " << thrown.what();
      EXPECT_NE(std::string(thrown.what()).find(error), std::string::npos) << thrown.what();
    }
  }
}

TEST(VideoDeviceProxy, MakesEveryCallOnTheVideoDevice) {
  TestRobot robot;
  robot.addVideoDevice();
  KyVideoDeviceProxy proxy(robot.connect());
  EXPECT_EQ(proxy.subscribe("", 0, 9, 5), "viewer_1");
  EXPECT_TRUE(proxy.setFrameRate("v", 12));
  EXPECT_TRUE(proxy.setResolution("v", 2));
  EXPECT_TRUE(proxy.setColorSpace("v", 0));
  EXPECT_TRUE(proxy.setActiveCamera(1));
  EXPECT_EQ(proxy.getCameraModelID(), 1);
  EXPECT_EQ(proxy.getParam(18), 0);
  EXPECT_EQ(proxy.getParam(6, 1), 0);
  proxy.setParam(18, 1);
  proxy.setParam(6, 99, 1);
  proxy.unsubscribe("v");
  const std::vector<std::string> calls = {
      R"(KyVideoDevice.subscribe("", 0, 9, 5))", R"(KyVideoDevice.setFrameRate("v", 12))",
      R"(KyVideoDevice.setResolution("v", 2))",  R"(KyVideoDevice.setColorSpace("v", 0))",
      R"(KyVideoDevice.setActiveCamera(1))",     R"(KyVideoDevice.getCameraModelID())",
      R"(KyVideoDevice.getParam(18))",           R"(KyVideoDevice.getParam(6, 1))",
      R"(KyVideoDevice.setParam(18, 1))",        R"(KyVideoDevice.setParam(6, 99, 1))",
      R"(KyVideoDevice.unsubscribe("v"))"};
  EXPECT_EQ(robot.calls(), calls);
}

TEST(VideoDeviceProxy, ThrowsWhereThereIsNoVideoDevice) {
  TestRobot robot;
  EXPECT_THROW(KyVideoDeviceProxy(robot.connect()), KyError);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "in_process_robot.h"
#include "ky/video_device_proxy.h"
#include "robot/services/video_device.h"
#include "support/wait.h"

namespace robot {
namespace {

// A robot whose cameras are of one model, and a desktop.
struct Bench {
  explicit Bench(int model)
      : cameras(InProcessRobot::cameras(model)),
        module(Ky::KyModule::createModule<VideoDevice>(robot.broker(), cameras)),
        device(robot.connect()) {}

  std::shared_ptr<Cameras> cameras;
  InProcessRobot robot;
  boost::shared_ptr<VideoDevice> module;
  Ky::KyVideoDeviceProxy device;
};

TEST(VideoDeviceParameters, TellTheModel) {
  EXPECT_EQ(Bench(1).device.getCameraModelID(), 1);
  EXPECT_EQ(Bench(2).device.getCameraModelID(), 2);
}

TEST(VideoDeviceParameters, AreKeptForEachCamera) {
  Bench bench(1);
  bench.device.setParam(0, 200, 1);
  EXPECT_EQ(bench.device.getParam(0, 1), 200);
  EXPECT_EQ(bench.device.getParam(0, 0), 128);
  bench.device.setParam(0, 7);
  EXPECT_EQ(bench.device.getParam(0, 0), 7) << "without a camera: the active one";
  bench.device.setActiveCamera(1);
  EXPECT_EQ(bench.device.getParam(0), 200);
}

TEST(VideoDeviceParameters, RefuseAnUnknownCamera) {
  Bench bench(1);
  const std::string text = "there is no camera 2; 0 and 1 are there";
  EXPECT_EQ(errorText([&] { bench.device.getParam(0, 2); }), text);
  EXPECT_EQ(errorText([&] { bench.device.setParam(0, 1, 2); }), text);
  EXPECT_EQ(errorText([&] { bench.device.setParam(18, 2); }), text);
}

TEST(VideoDeviceParameters, RefuseWhatTheModelLacks) {
  Bench bench(2);
  const std::pair<int, std::string> kLacking[] = {{4, "4 (red chroma)"},
                                                  {5, "5 (blue chroma)"},
                                                  {13, "13 (auto gain)"},
                                                  {21, "21 (exposure correction)"}};
  for (const auto& lacking : kLacking) {
    const int id = lacking.first;
    const std::string text =
        "a camera of model 2 has no parameter " + lacking.second + "; one of model 1 has";
    EXPECT_EQ(errorText([&, id = id] { bench.device.getParam(id, 0); }), text);
    EXPECT_EQ(errorText([&, id = id] { bench.device.setParam(id, 0, 0); }), text);
  }
  Bench first(1);
  EXPECT_EQ(errorText([&] { first.device.setParam(33, -50, 0); }),
            "a camera of model 1 has no parameter 33 (white balance); one of model 2 has");
}

TEST(VideoDeviceParameters, RefuseWhatNoCameraHas) {
  Bench bench(1);
  for (const int id : {-1, 9, 10, 16, 19, 22, 34}) {
    const std::string text = "cameras have no parameter " + std::to_string(id) +
                             "; the ids are 0 to 8, 11 to 15, 17, 18, 20, 21 and 33";
    EXPECT_EQ(errorText([&] { bench.device.getParam(id, 0); }), text);
    EXPECT_EQ(errorText([&] { bench.device.setParam(id, 0); }), text);
  }
}

TEST(VideoDeviceParameters, RefuseValuesOutOfRange) {
  Bench bench(2);
  EXPECT_EQ(errorText([&] { bench.device.setParam(6, 31, 1); }),
            "parameter 6 (gain) can't be 31; it goes from 32 to 255");
  EXPECT_EQ(errorText([&] { bench.device.setParam(3, 1, 0); }),
            "parameter 3 (hue) can't be 1; it goes from 0 to 0");
  EXPECT_EQ(bench.device.getParam(6, 1), 32);
  EXPECT_EQ(bench.device.getParam(3, 0), 0) << "told, so that nobody has to know the model first";
}

TEST(VideoDeviceParameters, SwitchTheActiveCamera) {
  Bench bench(1);
  bench.device.setParam(18, 1);
  EXPECT_EQ(bench.device.getParam(18), 1);
  EXPECT_EQ(bench.cameras->active(), 1);
}

TEST(VideoDeviceParameters, OfASubscriptionAreTheCallersOwn) {
  Bench bench(1);
  Ky::KyVideoDeviceProxy other(bench.robot.connect());
  bench.device.subscribe("me", 2, 0, 12);
  other.subscribe("me", 1, 9, 7);
  EXPECT_EQ(bench.device.getParam(14, 0), 2);
  EXPECT_EQ(bench.device.getParam(15), 12);
  EXPECT_EQ(bench.device.getParam(20, 0), 0);
  other.setParam(14, 3);
  other.setParam(15, 8);
  other.setParam(20, 10, 1);
  EXPECT_EQ(other.getImageRemote("me")[0].asInt(), 1280);
  EXPECT_EQ(other.getImageRemote("me")[3].asInt(), 10);
  EXPECT_EQ(other.getParam(15), 8);
  EXPECT_EQ(bench.device.getParam(14), 2);
}

TEST(VideoDeviceParameters, OfASubscriptionNeedOneToBeChanged) {
  Bench bench(1);
  EXPECT_EQ(bench.device.getParam(14), 0);
  EXPECT_EQ(bench.device.getParam(15), 5);
  EXPECT_EQ(bench.device.getParam(20), 9);
  EXPECT_EQ(errorText([&] { bench.device.setParam(14, 1); }),
            "parameter 14 belongs to a subscription; call subscribe() first");
  EXPECT_EQ(errorText([&] { bench.device.setParam(15, 31); }),
            "a frame rate of 31 can't be had; 1 to 30 can");
}

TEST(VideoDeviceParameters, ActOnThePicture) {
  Bench bench(1);
  bench.device.subscribe("me", 0, 0, 30);
  bench.device.setParam(1, 0);    // no contrast: all middle grey
  bench.device.setParam(0, 255);  // and bright
  EXPECT_TRUE(waitUntil([&] {
    const Ky::KyBinary pixels = bench.device.getImageRemote("me")[6].asBinary();
    return pixels.data()[0] == 235 && pixels.data()[pixels.size() / 2] == 235;
  }));
}

}  // namespace
}  // namespace robot

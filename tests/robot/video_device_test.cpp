// SPDX-License-Identifier: Apache-2.0
#include "robot/services/video_device.h"

#include <gtest/gtest.h>

#include "in_process_robot.h"
#include "ky/video_device_proxy.h"
#include "robot/camera/generated_scene.h"
#include "support/wait.h"

namespace robot {
namespace {

class VideoDeviceTest : public testing::Test {
 protected:
  std::shared_ptr<Cameras> fCameras = InProcessRobot::cameras();
  InProcessRobot fRobot;
  boost::shared_ptr<VideoDevice> fModule =
      Ky::KyModule::createModule<VideoDevice>(fRobot.broker(), fCameras);
  Ky::KyVideoDeviceProxy fDevice{fRobot.connect()};
};

TEST_F(VideoDeviceTest, ChoosesANameForASubscriberWithoutOne) {
  EXPECT_EQ(fDevice.subscribe("", 0, 9, 5), "viewer_1");
  EXPECT_EQ(fDevice.subscribe("", 0, 9, 5), "viewer_2");
  fDevice.unsubscribe("viewer_1");
  EXPECT_EQ(fDevice.subscribe("", 0, 9, 5), "viewer_1");
}

TEST_F(VideoDeviceTest, DeliversARecordOfTwelveElements) {
  fDevice.subscribe("me", 2, 9, 30);
  const Ky::KyValue record = fDevice.getImageRemote("me");
  ASSERT_EQ(record.size(), 12u);
  EXPECT_EQ(record[0].asInt(), 640);
  EXPECT_EQ(record[1].asInt(), 480);
  EXPECT_EQ(record[2].asInt(), 2);
  EXPECT_EQ(record[3].asInt(), 9);
  EXPECT_GT(record[4].asInt64(), 1600000000);
  EXPECT_LT(record[5].asInt(), 1000000);
  EXPECT_EQ(record[6].asBinary().size(), 640u * 480 * 2);
  EXPECT_EQ(record[7].asInt(), 0);
  EXPECT_EQ(record[8].asFloat(), 0.41692221f);
  EXPECT_EQ(record[9].asFloat(), 0.32097778f);
  EXPECT_EQ(record[10].asFloat(), -0.41692221f);
  EXPECT_EQ(record[11].asFloat(), -0.32097778f);
}

TEST_F(VideoDeviceTest, DeliversEveryResolutionInEveryColourSpace) {
  fDevice.subscribe("me", 0, 9, 30);
  for (int resolution = 0; resolution < 4; ++resolution)
    for (const int colorSpace : {0, 9, 10}) {
      ASSERT_TRUE(fDevice.setResolution("me", resolution));
      ASSERT_TRUE(fDevice.setColorSpace("me", colorSpace));
      const Ky::KyValue record = fDevice.getImageRemote("me");
      EXPECT_EQ(record[0].asInt(), 160 << resolution);
      EXPECT_EQ(record[1].asInt(), 120 << resolution);
      EXPECT_EQ(record[2].asInt(), colorSpace == 0 ? 1 : colorSpace == 9 ? 2 : 3);
      EXPECT_EQ(record[6].asBinary().size(),
                Ky::imageBytes(record[0].asInt(), record[1].asInt(), colorSpace));
    }
}

TEST_F(VideoDeviceTest, ShowsTheSceneAsItWasAtTheRecordsTime) {
  fDevice.subscribe("me", 3, 0, 30);
  const Ky::KyValue record = fDevice.getImageRemote("me");
  const std::int64_t time = record[4].asInt64() * 1000000 + record[5].asInt();
  const Frame expected(GeneratedScene(0).render(time), time, 0);
  EXPECT_EQ(record[6].asBinary(), expected.pixels({3, 0}));
}

TEST_F(VideoDeviceTest, GivesEachSubscriberItsOwnSettings) {
  fDevice.subscribe("small", 0, 0, 5);
  fDevice.subscribe("large", 2, 10, 5);
  EXPECT_EQ(fDevice.getImageRemote("small")[0].asInt(), 160);
  EXPECT_EQ(fDevice.getImageRemote("large")[0].asInt(), 640);
  EXPECT_EQ(fDevice.getImageRemote("large")[3].asInt(), 10);
}

TEST_F(VideoDeviceTest, ChangesTheSettingsOfASubscriberWhoSubscribesAgain) {
  fDevice.subscribe("me", 0, 9, 5);
  EXPECT_EQ(fDevice.subscribe("me", 1, 0, 10), "me");
  EXPECT_EQ(fDevice.getImageRemote("me")[0].asInt(), 320);
  EXPECT_EQ(fDevice.getParam(15), 10);
}

TEST_F(VideoDeviceTest, TellsTwoDesktopsOfOneNameApart) {
  Ky::KyVideoDeviceProxy other(fRobot.connect());
  fDevice.subscribe("Periscope", 0, 9, 5);
  other.subscribe("Periscope", 2, 0, 5);
  EXPECT_EQ(fDevice.getImageRemote("Periscope")[0].asInt(), 160);
  EXPECT_EQ(other.getImageRemote("Periscope")[0].asInt(), 640);
  other.unsubscribe("Periscope");
  EXPECT_EQ(fDevice.getImageRemote("Periscope")[0].asInt(), 160);
}

TEST_F(VideoDeviceTest, ForgetsTheSubscriptionsOfAPeerThatLeaves) {
  auto broker = fRobot.connect();
  Ky::KyVideoDeviceProxy(broker).subscribe("gone", 0, 9, 30);
  ASSERT_TRUE(waitUntil([&] { return fCameras->camera(0).framesTaken() > 0; }));
  broker->shutdown();
  EXPECT_TRUE(waitUntil([&] {
    return errorText([&] { fCameras->camera(0).newest(std::chrono::seconds(0)); }) != "no error";
  })) << "the camera goes on for nobody";
}

TEST_F(VideoDeviceTest, TellsAStrangerToSubscribeFirst) {
  EXPECT_EQ(errorText([&] { fDevice.getImageRemote("nobody"); }),
            "\"nobody\" is not subscribed; call subscribe() first");
  EXPECT_EQ(errorText([&] { fDevice.unsubscribe("nobody"); }), "\"nobody\" is not subscribed");
  EXPECT_FALSE(fDevice.setFrameRate("nobody", 5));
  EXPECT_FALSE(fDevice.setResolution("nobody", 0));
  EXPECT_FALSE(fDevice.setColorSpace("nobody", 9));
}

TEST_F(VideoDeviceTest, RefusesSettingsThatItHasNot) {
  fDevice.subscribe("me", 0, 9, 5);
  for (const int fps : {-1, 0, 31}) EXPECT_FALSE(fDevice.setFrameRate("me", fps));
  for (const int resolution : {-1, 4}) EXPECT_FALSE(fDevice.setResolution("me", resolution));
  for (const int colorSpace : {-1, 1, 13}) EXPECT_FALSE(fDevice.setColorSpace("me", colorSpace));
  EXPECT_TRUE(fDevice.setFrameRate("me", 30));
  EXPECT_TRUE(fDevice.setFrameRate("me", 1));
  EXPECT_EQ(fDevice.getImageRemote("me")[0].asInt(), 160);
}

TEST_F(VideoDeviceTest, ExplainsASubscriptionThatItRefuses) {
  EXPECT_EQ(errorText([&] { fDevice.subscribe("me", 4, 9, 5); }),
            "there is no resolution 4; 0 is 160x120, 1 320x240, 2 640x480, 3 1280x960");
  EXPECT_EQ(errorText([&] { fDevice.subscribe("me", 0, 13, 5); }),
            "there is no colour space 13; 0 is grey, 9 YUV 4:2:2, 10 YUV 4:4:4");
  EXPECT_EQ(errorText([&] { fDevice.subscribe("me", 0, 9, 0); }),
            "a frame rate of 0 can't be had; 1 to 30 can");
  EXPECT_EQ(errorText([&] { fDevice.subscribe(std::string(129, 'x'), 0, 9, 5); }),
            "a subscriber's name may have 128 bytes");
}

TEST_F(VideoDeviceTest, BoundsTheSubscriptionsOfOnePeer) {
  for (int i = 0; i < 32; ++i) fDevice.subscribe("", 0, 9, 5);
  EXPECT_EQ(errorText([&] { fDevice.subscribe("", 0, 9, 5); }),
            "there are 32 subscriptions already; unsubscribe first");
  EXPECT_EQ(Ky::KyVideoDeviceProxy(fRobot.connect()).subscribe("", 0, 9, 5), "viewer_33");
}

TEST_F(VideoDeviceTest, SwitchesTheCameraForEverybody) {
  Ky::KyVideoDeviceProxy other(fRobot.connect());
  fDevice.subscribe("me", 0, 9, 5);
  other.subscribe("other", 0, 9, 5);
  EXPECT_TRUE(fDevice.setActiveCamera(1));
  EXPECT_EQ(fDevice.getImageRemote("me")[7].asInt(), 1);
  EXPECT_EQ(other.getImageRemote("other")[7].asInt(), 1);
  EXPECT_FALSE(fDevice.setActiveCamera(2));
  EXPECT_FALSE(fDevice.setActiveCamera(-1));
  EXPECT_EQ(other.getParam(18), 1);
}

TEST_F(VideoDeviceTest, DescribesEveryMethodAndParameter) {
  for (const Ky::KyMethod& method : fModule->methods()) {
    EXPECT_FALSE(method.description.empty()) << method.name;
    for (const auto& parameter : method.parameters)
      EXPECT_FALSE(parameter.description.empty()) << method.name << " " << parameter.name;
    if (method.result.type != "nothing") {
      EXPECT_FALSE(method.result.description.empty()) << method.name;
    }
  }
  EXPECT_FALSE(fModule->getModuleDescription().empty());
}

TEST_F(VideoDeviceTest, KnowsNoSteppingThroughStoredPictures) {
  const auto proxy = fRobot.connect()->getProxy("KyVideoDevice");
  EXPECT_NO_THROW(proxy->call<Ky::KyValue>("getMethodHelp", "getImageRemote"));
  EXPECT_THROW(proxy->call<Ky::KyValue>("getMethodHelp", "nextImage"), Ky::KyError);
  EXPECT_THROW(proxy->call<Ky::KyValue>("getMethodHelp", "previousImage"), Ky::KyError);
}

}  // namespace
}  // namespace robot

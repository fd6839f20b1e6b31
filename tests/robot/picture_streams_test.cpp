// SPDX-License-Identifier: Apache-2.0
// From the robot's cameras through a network to a program: exact or as H.264, as the link allows.
#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <vector>

#include "in_process_robot.h"
#include "picture_program.h"
#include "robot/camera/generated_scene.h"
#include "robot/services/video_device.h"
#include "streaming/likeness.h"
#include "support/link.h"
#include "support/wait.h"

namespace robot {
namespace {

using namespace std::chrono_literals;

constexpr LinkSettings kSlow{.delay = 5ms, .bitsPerSecond = 2'000'000};

struct Program : PictureProgram {
  using PictureProgram::PictureProgram;

  Ky::KyValue picture() const { return device->getImageRemote("me"); }
  // What the stream is said to carry after another picture: "exact", "H.264, ...".
  std::string carried() const {
    picture();
    const auto streams = broker->statistics().streams;
    return streams.empty() ? "" : streams.back();
  }
  bool isEncoded() const { return carried().find("H.264, ") == 0; }
};

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::int64_t timeOf(const Ky::KyValue& record) {
  return record[4].asInt64() * 1000000 + record[5].asInt64();
}

// What the camera took then.
Ky::KyBinary takenAt(std::int64_t time, const Ky::KyValue& record) {
  const Frame frame(GeneratedScene(record[7].asInt()).render(time), time, record[7].asInt());
  for (int resolution = 0; resolution < kResolutions; ++resolution)
    if (sizeOf(resolution).width == record[0].asInt())
      return frame.pixels({resolution, record[3].asInt()});
  return {};
}

bool isExact(const Ky::KyValue& record) {
  return record[6].asBinary() == takenAt(timeOf(record), record);
}

// In decibels: 10 is another picture, 15 a blurred one, as a first one may be where little can be
// sent, 25 one on which all is seen.
double likenessOf(const Ky::KyValue& record) {
  return likenessOfLuminance(record[6].asBinary(), takenAt(timeOf(record), record),
                             record[3].asInt());
}

class PictureStreamsTest : public testing::Test {
 protected:
  PictureStreamsTest() : link(robot->address().port) {}
  ~PictureStreamsTest() override {
    device.reset();
    robot->shutdown();
  }

  static boost::shared_ptr<Ky::KyBroker> listen() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    return Ky::KyBroker::create(options);
  }

  boost::shared_ptr<Ky::KyBroker> robot = listen();
  boost::shared_ptr<VideoDevice> device =
      Ky::KyModule::createModule<VideoDevice>(robot, InProcessRobot::cameras());
  Link link;
};

TEST_F(PictureStreamsTest, OnAFreeComputerEveryPictureIsExactFromTheFirstOn) {
  const Program desktop(robot->address().port);
  desktop.device->subscribe("me", 1, 9, 30);
  std::set<std::int64_t> seen;
  EXPECT_TRUE(waitUntil([&] {
    const Ky::KyValue record = desktop.picture();
    const bool isNew = seen.insert(timeOf(record)).second;
    EXPECT_TRUE(!isNew || isExact(record)) << seen.size();
    EXPECT_EQ(desktop.carried(), "exact");
    return seen.size() >= 20;
  }));
}

TEST_F(PictureStreamsTest, OverASlowLinkTheyBecomeH264) {
  link.set(kSlow);
  const Program desktop(link.port());
  desktop.device->subscribe("me", 1, 9, 30);
  EXPECT_TRUE(waitUntil([&] { return desktop.isEncoded(); }));
  std::set<std::int64_t> seen;
  EXPECT_TRUE(waitUntil([&] {
    const Ky::KyValue record = desktop.picture();
    EXPECT_EQ(record.size(), 12u);
    const bool isNew = seen.insert(timeOf(record)).second;
    EXPECT_TRUE(!isNew || likenessOf(record) > 15) << seen.size();
    return seen.size() >= 20;
  }));
  EXPECT_TRUE(waitUntil([&] { return likenessOf(desktop.picture()) > 25; }));
}

TEST_F(PictureStreamsTest, WhoSavesGetsH264OverAFreeLinkToo) {
  const Program desktop(robot->address().port, "saving");
  desktop.device->subscribe("me", 2, 9, 30);
  EXPECT_TRUE(waitUntil([&] { return desktop.carried() == "H.264, 0.8 Mbit/s"; }));
  EXPECT_TRUE(waitUntil([&] { return likenessOf(desktop.picture()) > 25; }));
}

TEST_F(PictureStreamsTest, WhoWantsThemExactGetsThemSoOverASlowLink) {
  link.set(kSlow);
  const Program desktop(link.port(), "exact");
  desktop.device->subscribe("me", 1, 9, 30);
  std::set<std::int64_t> seen;
  EXPECT_TRUE(waitUntil([&] {
    const Ky::KyValue record = desktop.picture();
    const bool isNew = seen.insert(timeOf(record)).second;
    EXPECT_TRUE(!isNew || isExact(record));
    EXPECT_EQ(desktop.carried(), "exact");
    return seen.size() >= 4;
  }));
}

TEST_F(PictureStreamsTest, AnEncodingThatThereIsNotIsRefused) {
  const Program desktop(robot->address().port, "blurred");
  desktop.device->subscribe("me", 1, 9, 30);
  EXPECT_NE(errorText([&] {
              desktop.picture();
            }).find("pictures can't be sent as \"blurred\"; they can as "),
            std::string::npos);
}

TEST_F(PictureStreamsTest, AnotherPreferenceHoldsAtOnce) {
  const Program desktop(robot->address().port);
  desktop.device->subscribe("me", 1, 9, 30);
  EXPECT_EQ(desktop.carried(), "exact");
  desktop.broker->setPreference("KyVideoDevice.pictures", "saving");
  EXPECT_TRUE(waitUntil([&] { return desktop.isEncoded(); }));
  desktop.broker->setPreference("KyVideoDevice.pictures", "exact");
  EXPECT_TRUE(waitUntil([&] { return desktop.carried() == "exact"; }));
  EXPECT_TRUE(waitUntil([&] { return isExact(desktop.picture()); }));
}

TEST_F(PictureStreamsTest, AfterALostConnectionH264GoesOn) {
  link.set(kSlow);
  const Program desktop(link.port());
  desktop.device->subscribe("me", 1, 9, 30);
  EXPECT_TRUE(waitUntil([&] { return desktop.isEncoded(); }));
  for (int i = 0; i < 3; ++i) {
    const std::size_t before = link.accepted();
    link.cut();
    EXPECT_TRUE(waitUntil([&] { return link.accepted() > before; }));
    const std::int64_t cut = now();
    EXPECT_TRUE(waitUntil([&] {
      return errorText([&] {
               const Ky::KyValue record = desktop.picture();
               if (timeOf(record) < cut) throw Ky::KyError("it is old");
               EXPECT_GT(likenessOf(record), 15);
             }) == "no error";
    }));
    EXPECT_TRUE(desktop.isEncoded());
  }
}

TEST_F(PictureStreamsTest, ThereIsAKeyFrameAtTheBeginningAndAfterALostConnectionAndNoOther) {
  const Program desktop(link.port());
  desktop.device->subscribe("me", 1, 9, 30);
  const auto stream = desktop.broker->receiveStream(90);
  desktop.broker->call("KyVideoDevice", "openPictures", {"me", stream->id(), "saving"});
  std::vector<std::int64_t> keys;
  std::int64_t newest = 0;
  const auto comes = [&](std::int64_t number) {
    return waitUntil([&] {
      while (const auto item = stream->next(0ms)) {
        newest = item->value[2].asInt64();
        if (item->value[3].asBool()) keys.push_back(newest);
      }
      return newest >= number;
    });
  };
  EXPECT_TRUE(comes(45));
  EXPECT_EQ(keys, std::vector<std::int64_t>{1});
  link.cut();
  EXPECT_TRUE(waitUntil([&] { return comes(newest + 1) && keys.size() == 2; }));
  EXPECT_TRUE(comes(newest + 45));
  EXPECT_EQ(keys.size(), 2u);
}

TEST_F(PictureStreamsTest, EveryChangeOfTheFormatIsFollowed) {
  const Program desktop(robot->address().port, "saving");
  desktop.device->subscribe("me", 2, 9, 30);
  for (int i = 0; i < 100; ++i) {
    const int resolution = i % 3;
    const int colorSpace = i % 2 == 0 ? 0 : 9;
    EXPECT_TRUE(desktop.device->setResolution("me", resolution));
    EXPECT_TRUE(desktop.device->setColorSpace("me", colorSpace));
    const Ky::KyValue record = desktop.picture();
    ASSERT_EQ(record[0].asInt(), 160 << resolution) << i;
    ASSERT_EQ(record[3].asInt(), colorSpace) << i;
    if (i % 10 < 2) {
      ASSERT_GT(likenessOf(record), 13) << i;
    }
  }
  EXPECT_TRUE(desktop.isEncoded());
}

TEST_F(PictureStreamsTest, AnotherCameraIsShownAtOnce) {
  const Program desktop(robot->address().port, "saving");
  desktop.device->subscribe("me", 1, 9, 30);
  for (const int camera : {0, 1, 0, 1}) {
    EXPECT_TRUE(desktop.device->setActiveCamera(camera));
    const Ky::KyValue record = desktop.picture();
    EXPECT_EQ(record[7].asInt(), camera);
    EXPECT_GT(likenessOf(record), 13);
    EXPECT_TRUE(waitUntil([&] { return likenessOf(desktop.picture()) > 25; }));
  }
}

}  // namespace
}  // namespace robot

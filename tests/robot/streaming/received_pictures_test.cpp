// SPDX-License-Identifier: Apache-2.0
// What programs make of H.264 from a robot that does as the test says, mostly wrong.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ky/module.h"
#include "ky/video_device_proxy.h"
#include "likeness.h"
#include "moving_scene.h"
#include "robot/streaming/picture_encoder.h"
#include "support/wait.h"
#include "zu/mutex.h"

namespace robot {
namespace {

using Ky::KyBinary;
using Ky::KyValue;

constexpr ImageFormat kFormat{1, kYuv422};

// Sends each stream what the script says for it, and goes on with what the test says.
class Device : public Ky::KyModule {
 public:
  using Script = std::function<std::vector<KyValue>(int opening)>;

  Device(boost::shared_ptr<Ky::KyBroker> broker, Script script)
      : KyModule(std::move(broker), "KyVideoDevice"), fScript(std::move(script)) {
    functionName("openPictures", getName(), "");
    for (const char* parameter : {"name", "stream", "encoding"}) addParam(parameter, "");
    bindMethod(&Device::openPictures);
    offer("openPictures");
  }

  void openPictures(const Ky::KyPeer& caller, const std::string&, int stream,
                    const std::string& encoding) {
    const zu::MutexLock guard(fMutex);
    fEncodings.push_back(encoding);
    fSender = getParentBroker()->sendStream(caller, stream);
    for (KyValue& item : fScript(static_cast<int>(fEncodings.size()))) sendNext(std::move(item));
  }
  void stop() override {
    const zu::MutexLock guard(fMutex);
    fSender.reset();
  }
  void send(KyValue item) {
    const zu::MutexLock guard(fMutex);
    sendNext(std::move(item));
  }
  // Of the streams so far.
  std::vector<std::string> encodings() const {
    const zu::MutexLock guard(fMutex);
    return fEncodings;
  }

 private:
  void sendNext(KyValue item) ZU_REQUIRES(fMutex) {
    const Ky::KyStreamSender& sender = *fSender;
    EXPECT_TRUE(waitUntil([&] { return sender.isFree(); }));
    fSender->send(std::move(item));
  }

  const Script fScript;
  mutable zu::Mutex fMutex;
  std::unique_ptr<Ky::KyStreamSender> fSender ZU_GUARDED_BY(fMutex);
  std::vector<std::string> fEncodings ZU_GUARDED_BY(fMutex);
};

// An encoder's packets as items.
class Chain {
 public:
  // The next picture, whose seconds are its number.
  KyValue next(bool wantsKey = false) {
    ++fNumber;
    const EncodedPicture made = fEncoder.encode(fScene.picture(fNumber), wantsKey);
    return item(made.bytes, fNumber, made.isKey);
  }
  std::vector<KyValue> several(int count) {
    std::vector<KyValue> items;
    for (int i = 0; i < count; ++i) items.push_back(next());
    return items;
  }
  static KyValue item(const KyBinary& packet, int number, bool isKey, int width = 320,
                      int bitRate = 2000000) {
    const KyValue record =
        KyValue::array({width, 240, 2, 9, number, 0, packet, 0, 0.4, 0.3, -0.4, -0.3});
    return KyValue::array({"h264", record, number, isKey, bitRate});
  }

 private:
  EncoderSettings settings() const {
    EncoderSettings made;
    made.format = kFormat;
    return made;
  }
  int fNumber = 0;
  MovingScene fScene{kFormat};
  PictureEncoder fEncoder{settings()};
};

KyBinary garbage() {
  return KyBinary(std::vector<std::uint8_t>(1000, 0x5a));
}

class ReceivedPicturesTest : public testing::Test {
 protected:
  ~ReceivedPicturesTest() override {
    proxy.reset();
    device.reset();
    desktop->shutdown();
    robot->shutdown();
  }

  void begin(Device::Script script) {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    robot = Ky::KyBroker::create(options);
    device = Ky::KyModule::createModule<Device>(robot, std::move(script));
    Ky::KyBrokerOptions peer;
    peer.name = "desktop";
    peer.parent = robot->address();
    desktop = Ky::KyBroker::create(peer);
    proxy = std::make_unique<Ky::KyVideoDeviceProxy>(desktop);
  }

  // The next picture's number. It must be the one of that number.
  int shown() {
    const KyValue record = proxy->getImageRemote("viewer");
    const int number = record[4].asInt();
    const KyBinary wanted = MovingScene(kFormat).picture(number);
    EXPECT_GT(likenessOfLuminance(record[6].asBinary(), wanted, kFormat.colorSpace), 24) << number;
    return number;
  }
  // True when that picture comes; none of the others.
  bool comes(int number, const std::vector<int>& never = {}) {
    return waitUntil([&] {
      const int now = shown();
      for (const int each : never) EXPECT_NE(now, each);
      return now == number;
    });
  }
  std::string error() {
    try {
      proxy->getImageRemote("viewer");
      return "no error";
    } catch (const Ky::KyError& error) {
      return error.what();
    }
  }
  std::size_t opened() const { return device->encodings().size(); }
  std::string carried() const {
    const auto streams = desktop->statistics().streams;
    return streams.empty() ? "" : streams.back();
  }

  boost::shared_ptr<Ky::KyBroker> robot;
  boost::shared_ptr<Device> device;
  boost::shared_ptr<Ky::KyBroker> desktop;
  std::unique_ptr<Ky::KyVideoDeviceProxy> proxy;
};

TEST_F(ReceivedPicturesTest, AreDecodedIntoRecordsOfTheSameShape) {
  Chain chain;
  begin([&](int) { return chain.several(3); });
  EXPECT_TRUE(comes(3));
  const KyValue record = proxy->getImageRemote("viewer");
  ASSERT_EQ(record.size(), 12u);
  EXPECT_EQ(record[2], KyValue(2));
  EXPECT_EQ(record[6].asBinary().size(), 320u * 240 * 2);
  EXPECT_EQ(record[11], KyValue(-0.3));
  EXPECT_EQ(opened(), 1u);
}

TEST_F(ReceivedPicturesTest, WhatFollowsAGapIsNotShownAndTheStreamIsOpenedAnew) {
  Chain broken;
  Chain whole;
  begin([&](int opening) {
    if (opening > 1) return whole.several(7);
    auto items = broken.several(6);
    items.erase(items.begin() + 2);
    return items;
  });
  EXPECT_TRUE(comes(7));
  EXPECT_EQ(opened(), 2u);
}

TEST_F(ReceivedPicturesTest, AfterAGapOldPicturesStayUntilTheKeyFrame) {
  Chain broken;
  begin([&](int opening) { return opening == 1 ? broken.several(2) : std::vector<KyValue>(); });
  EXPECT_TRUE(comes(2));
  broken.next();
  device->send(broken.next());
  EXPECT_TRUE(waitUntil([&] {
    EXPECT_EQ(shown(), 2);
    return opened() == 2;
  }));
  EXPECT_EQ(shown(), 2);
  Chain whole;
  device->send(whole.next());
  EXPECT_TRUE(comes(1));
}

TEST_F(ReceivedPicturesTest, AKeyFrameAfterAGapGoesOn) {
  Chain chain;
  begin([&](int) {
    auto items = chain.several(2);
    chain.next();
    chain.next();
    items.push_back(chain.next(true));
    items.push_back(chain.next());
    return items;
  });
  EXPECT_TRUE(comes(6));
  EXPECT_EQ(opened(), 1u);
}

TEST_F(ReceivedPicturesTest, WhatComesTwiceOrLateIsIgnored) {
  Chain chain;
  begin([&](int) {
    auto items = chain.several(3);
    items.push_back(items[2]);
    items.push_back(items[1]);
    items.push_back(Chain::item(garbage(), 3, true));
    items.push_back(chain.next());
    return items;
  });
  EXPECT_TRUE(comes(4));
  EXPECT_EQ(opened(), 1u);
}

TEST_F(ReceivedPicturesTest, APacketThatCannotBeDecodedOpensTheStreamAnew) {
  Chain broken;
  const KyValue wrong[] = {
      Chain::item(garbage(), 3, false),
      Chain::item(garbage(), 3, true),
      Chain::item(KyBinary(), 3, false),
      Chain::item(Chain().next()[1][6].asBinary(), 3, true, 640),
      Chain::item(Chain().next()[1][6].asBinary(), 3, true, 320, 0),
      KyValue::array({"h264"}),
      KyValue::array({"h264", 1, 3, true, 1000}),
      KyValue::array({"h264", KyValue::array({1, 2, 3}), 3, true, 1000}),
      KyValue::array({"h264", "record", 3, "key", 1000}),
  };
  for (const KyValue& item : wrong) {
    Chain first;
    Chain second;
    begin([&](int opening) { return opening == 1 ? first.several(2) : second.several(5); });
    EXPECT_TRUE(comes(2)) << item.toString();
    device->send(item);
    EXPECT_TRUE(comes(5)) << item.toString();
    EXPECT_EQ(opened(), 2u) << item.toString();
    proxy.reset();
    device.reset();
    desktop->shutdown();
    robot->shutdown();
  }
  begin([&](int) { return std::vector<KyValue>(); });
}

TEST_F(ReceivedPicturesTest, StreamsThatCannotBeDecodedAreAnErrorAfterThree) {
  Chain whole;
  begin([&](int opening) {
    return opening < 5 ? std::vector{Chain::item(garbage(), 1, true)} : whole.several(1);
  });
  EXPECT_EQ(error().find("the robot's picture can't be decoded: a video packet "), 0u);
  EXPECT_EQ(opened(), 3u);
  EXPECT_EQ(error().find("the robot's picture can't be decoded: a video packet "), 0u);
  EXPECT_EQ(opened(), 4u);
  EXPECT_TRUE(comes(1)) << "it is tried again";
}

TEST_F(ReceivedPicturesTest, ARobotThatBreaksTheChainAfterEachPictureHoldsNobodyUp) {
  begin([&](int) {
    Chain chain;
    auto items = chain.several(1);
    items.push_back(Chain::item(garbage(), 2, false));
    return items;
  });
  for (int i = 0; i < 10; ++i) EXPECT_EQ(shown(), 1);
}

TEST_F(ReceivedPicturesTest, ThePreferenceSaysHowTheyAreToCome) {
  Chain chain;
  begin([&](int) { return std::vector{chain.next(true)}; });
  EXPECT_EQ(shown(), 1);
  for (const char* preference : {"exact", "saving", "automatic"}) {
    desktop->setPreference("KyVideoDevice.pictures", preference);
    shown();
    shown();
  }
  desktop->setPreference("KyVideoDevice.pictures", "");
  shown();
  EXPECT_EQ(device->encodings(),
            (std::vector<std::string>{"automatic", "exact", "saving", "automatic"}));
}

TEST_F(ReceivedPicturesTest, WhatComesIsSaidInWords) {
  const KyBinary pixels = MovingScene(kFormat).picture(1);
  const KyBinary key = Chain().next()[1][6].asBinary();
  KyValue exact = KyValue::array({"exact", Chain::item(pixels, 1, true)[1]});
  int number = 1;
  begin([&](int) { return std::vector{exact}; });
  shown();
  EXPECT_EQ(carried(), "exact");
  const struct {
    int bitRate;
    const char* words;
  } cases[] = {{1440000, "H.264, 1.4 Mbit/s"},
               {1580000, "H.264, 1.4 Mbit/s"},  // hardly more
               {1600000, "H.264, 1.6 Mbit/s"},
               {52000, "H.264, 0.1 Mbit/s"},
               {20000000, "H.264, 20.0 Mbit/s"}};
  for (const auto& [bitRate, words] : cases) {
    device->send(Chain::item(key, ++number, true, 320, bitRate));
    EXPECT_TRUE(waitUntil([&] { return proxy->getImageRemote("viewer")[4].asInt() == number; }));
    EXPECT_EQ(carried(), words);
  }
  device->send(exact);
  EXPECT_TRUE(waitUntil([&] { return proxy->getImageRemote("viewer")[4].asInt() == 1; }));
  EXPECT_EQ(carried(), "exact");
}

}  // namespace
}  // namespace robot

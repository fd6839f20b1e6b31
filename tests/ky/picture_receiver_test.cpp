// SPDX-License-Identifier: Apache-2.0
// Pictures that come as a stream, behind the calls that ask for them.
#include <gtest/gtest.h>

#include <future>

#include "error_of_call.h"
#include "ky/module.h"
#include "ky/video_device_proxy.h"
#include "support/wait.h"
#include "zu/mutex.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

KyValue record(int number, int width = 320, int height = 240) {
  const auto size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 2;
  return KyValue::array({width, height, 2, 9, number, 0, KyBinary(std::vector<std::uint8_t>(size)),
                         0, 0.4, 0.3, -0.4, -0.3});
}

KyValue exact(KyValue record) {
  return KyValue::array({"exact", std::move(record)});
}

// A video device that sends what the test says and answers no getImageRemote() at all.
class Device : public KyModule {
 public:
  explicit Device(boost::shared_ptr<KyBroker> broker)
      : KyModule(std::move(broker), "KyVideoDevice") {
    functionName("subscribe", getName(), "Answers the name.");
    for (const char* parameter : {"name", "resolution", "colorSpace", "fps"})
      addParam(parameter, "");
    bindMethod(&Device::subscribe);
    functionName("unsubscribe", getName(), "");
    addParam("name", "");
    bindMethod(&Device::unsubscribe);
    functionName("setResolution", getName(), "");
    addParam("name", "");
    addParam("resolution", "");
    bindMethod(&Device::setResolution);
    functionName("openPictures", getName(), "");
    addParam("name", "");
    addParam("stream", "");
    addParam("encoding", "");
    bindMethod(&Device::openPictures);
    offer("openPictures");
  }

  std::string subscribe(const std::string& name, int, int, int) { return name; }
  void unsubscribe(const std::string&) {}
  bool setResolution(const std::string&, int) {
    const zu::MutexLock guard(fMutex);
    if (fAfterChange) fSender->send(*fAfterChange);
    return true;
  }
  void openPictures(const KyPeer& caller, const std::string& name, int stream, const std::string&) {
    if (name != "viewer") throw KyError("\"" + name + "\" is not subscribed");
    const zu::MutexLock guard(fMutex);
    ++fOpened;
    fSender = getParentBroker()->sendStream(caller, stream);
    if (fFirst) fSender->send(*fFirst);
    if (fEndsAtOnce) fSender.reset();
  }
  void stop() override {
    const zu::MutexLock guard(fMutex);
    fSender.reset();
  }

  void send(KyValue item) {
    const zu::MutexLock guard(fMutex);
    fSender->send(std::move(item));
  }
  void sendWhenOpened(KyValue item) {
    const zu::MutexLock guard(fMutex);
    fFirst = std::move(item);
  }
  void endWhenOpened() {
    const zu::MutexLock guard(fMutex);
    fFirst.reset();
    fEndsAtOnce = true;
  }
  void sendAfterChange(KyValue item) {
    const zu::MutexLock guard(fMutex);
    fAfterChange = std::move(item);
  }
  int opened() const {
    const zu::MutexLock guard(fMutex);
    return fOpened;
  }
  bool isClosed() const {
    const zu::MutexLock guard(fMutex);
    return fSender->isClosed();
  }

 private:
  mutable zu::Mutex fMutex;
  std::unique_ptr<KyStreamSender> fSender ZU_GUARDED_BY(fMutex);
  std::optional<KyValue> fFirst ZU_GUARDED_BY(fMutex);
  std::optional<KyValue> fAfterChange ZU_GUARDED_BY(fMutex);
  bool fEndsAtOnce ZU_GUARDED_BY(fMutex) = false;
  int fOpened ZU_GUARDED_BY(fMutex) = 0;
};

class PicturesTest : public testing::Test {
 protected:
  PicturesTest() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
    device = KyModule::createModule<Device>(robot);
    device->sendWhenOpened(exact(record(1)));
    KyBrokerOptions peer;
    peer.name = "desktop";
    peer.parent = robot->address();
    desktop = KyBroker::create(peer);
    proxy = std::make_unique<KyVideoDeviceProxy>(desktop);
    proxy->subscribe("viewer", 1, 9, 30);
  }
  ~PicturesTest() override {
    proxy.reset();
    device.reset();
    desktop->shutdown();
    robot->shutdown();
  }

  // Sends a picture, and returns once it is there.
  void deliver(int number) {
    const std::uint64_t before = desktop->statistics().bytesIn;
    device->send(exact(record(number)));
    EXPECT_TRUE(waitUntil([&] { return desktop->statistics().bytesIn >= before + 320 * 240 * 2; }));
    desktop->isModulePresent("KyVideoDevice");  // the answer comes after it
  }
  int newest() { return proxy->getImageRemote("viewer")[4].asInt(); }

  boost::shared_ptr<KyBroker> robot;
  boost::shared_ptr<Device> device;
  boost::shared_ptr<KyBroker> desktop;
  std::unique_ptr<KyVideoDeviceProxy> proxy;
};

}  // namespace

TEST_F(PicturesTest, TheFirstCallOpensTheStreamAndAnswersItsFirstPicture) {
  EXPECT_EQ(device->opened(), 0);
  EXPECT_EQ(proxy->getImageRemote("viewer"), record(1));
  EXPECT_EQ(device->opened(), 1);
}

TEST_F(PicturesTest, EachCallAnswersTheNewestThatHasCome) {
  EXPECT_EQ(newest(), 1);
  EXPECT_EQ(newest(), 1) << "nothing newer";
  device->send(exact(record(2)));
  EXPECT_TRUE(waitUntil([&] { return newest() == 2; }));
  EXPECT_EQ(device->opened(), 1);
}

TEST_F(PicturesTest, OfTwoThatCameSinceTheLastCallBothAreAnswered) {
  EXPECT_EQ(newest(), 1);
  deliver(2);
  deliver(3);
  EXPECT_EQ(newest(), 2);
  EXPECT_EQ(newest(), 3);
  EXPECT_EQ(newest(), 3);
}

TEST_F(PicturesTest, OfMoreTheLastTwoAreAnswered) {
  EXPECT_EQ(newest(), 1);
  for (const int number : {2, 3, 4, 5}) deliver(number);
  EXPECT_EQ(newest(), 4);
  EXPECT_EQ(newest(), 5);
}

TEST_F(PicturesTest, OneThatWaitsAtEveryCallIsLeftOutInTheEnd) {
  EXPECT_EQ(newest(), 1);
  deliver(2);
  for (int number = 3; number < 17; ++number) {
    deliver(number);
    ASSERT_EQ(newest(), number - 1);
  }
  deliver(17);
  EXPECT_EQ(newest(), 17);
  deliver(18);
  EXPECT_EQ(newest(), 18);
}

TEST_F(PicturesTest, AfterAChangeOfResolutionThePicturesBeforeItAreNotAnswered) {
  EXPECT_EQ(newest(), 1);
  device->send(exact(record(2)));  // on its way when the size is changed
  device->sendAfterChange(exact(record(3, 640, 480)));
  EXPECT_TRUE(proxy->setResolution("viewer", 2));
  EXPECT_EQ(proxy->getImageRemote("viewer")[0], KyValue(640));
}

TEST_F(PicturesTest, WhoWaitsForASizeWaitsForAnotherOnceThatIsAskedFor) {
  EXPECT_EQ(newest(), 1);
  EXPECT_TRUE(proxy->setResolution("viewer", 2));
  auto waiting = std::async(std::launch::async, [&] { return newest(); });
  deliver(2);
  EXPECT_TRUE(proxy->setResolution("viewer", 0));
  const std::uint64_t before = desktop->statistics().bytesIn;
  device->send(exact(record(3, 160, 120)));
  EXPECT_TRUE(waitUntil([&] { return desktop->statistics().bytesIn >= before + 160 * 120 * 2; }));
  device->send(exact(record(4, 160, 120)));
  EXPECT_EQ(waiting.get(), 3);
}

TEST_F(PicturesTest, AnotherSizeThanWasAskedForIsAnsweredAfterAWhile) {
  EXPECT_EQ(newest(), 1);
  EXPECT_TRUE(proxy->setResolution("viewer", 2));
  EXPECT_EQ(proxy->getImageRemote("viewer")[0], KyValue(320));
}

TEST_F(PicturesTest, WhyThereIsNoneIsSaidAsByACall) {
  device->sendWhenOpened(KyValue::array({"error", "camera 0 has no picture: it is gone"}));
  EXPECT_EQ(errorOfCall([&] { newest(); }),
            "KyVideoDevice.getImageRemote: camera 0 has no picture: it is gone");
  device->send(exact(record(5)));
  EXPECT_TRUE(
      waitUntil([&] { return errorOfCall([&] { EXPECT_EQ(newest(), 5); }) == "no error"; }));
}

TEST_F(PicturesTest, WhyNoMoreComeIsSaid) {
  device->endWhenOpened();
  EXPECT_EQ(errorOfCall([&] { newest(); }),
            "KyVideoDevice.getImageRemote: no more pictures come: it was ended");
}

TEST_F(PicturesTest, WhoIsNotSubscribedIsToldSo) {
  EXPECT_NE(errorOfCall([&] { proxy->getImageRemote("stranger"); }).find("is not subscribed"),
            std::string::npos);
}

TEST_F(PicturesTest, UnusableRecordsAreErrorsAndTheNextPictureIsFine) {
  const KyValue bad[] = {
      exact(record(2, 1281, 240)), exact(KyValue(7)),
      KyValue("picture"),          KyValue::array(),
      KyValue::array({7, 8}),      exact(KyValue::array({320, 240, 2, 9, 1, 0, KyBinary()}))};
  for (const KyValue& item : bad) {
    device->sendWhenOpened(item);
    KyVideoDeviceProxy fresh(desktop);
    const std::string error = errorOfCall([&] {
      const KyValue answer = fresh.getImageRemote("viewer");
      EXPECT_EQ(answer, KyValue(7)) << "only what its reader refuses";
    });
    device->send(exact(record(9)));
    EXPECT_TRUE(waitUntil([&] {
      return errorOfCall([&] { EXPECT_EQ(fresh.getImageRemote("viewer")[4], KyValue(9)); }) ==
             "no error";
    })) << error;
  }
}

TEST_F(PicturesTest, TheStreamIsClosedWhenNobodyAsksAndOpenedAnewWhenSomebodyDoes) {
  EXPECT_EQ(newest(), 1);
  EXPECT_TRUE(waitUntil([&] { return device->isClosed(); }));
  device->sendWhenOpened(exact(record(2)));
  EXPECT_EQ(newest(), 2);
  EXPECT_EQ(device->opened(), 2);
}

TEST_F(PicturesTest, AnEndOfTheSubscriptionClosesTheStream) {
  EXPECT_EQ(newest(), 1);
  proxy->unsubscribe("viewer");
  EXPECT_TRUE(waitUntil([&] { return device->isClosed(); }));
}

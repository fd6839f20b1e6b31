// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/shared_encoders.h"

#include <gtest/gtest.h>

#include <thread>

#include "likeness.h"
#include "robot/camera/generated_scene.h"
#include "robot/streaming/encoded_pictures.h"
#include "video/picture_decoder.h"

namespace robot {
namespace {

constexpr ImageFormat kFormat{1, kYuv422};
constexpr int kRate = 1500000;  // in the middle of an octave
constexpr std::int64_t kPeriod = 33333;

// The camera's `number`th picture.
std::shared_ptr<const Frame> frame(int number, int camera = 0) {
  static const GeneratedScene scenes[] = {GeneratedScene(0), GeneratedScene(1)};
  const std::int64_t time = 1700000000000000 + number * kPeriod;
  return std::make_shared<Frame>(scenes[camera].render(time), time, camera);
}

// Gets packets and looks at them as a program does.
class Subscriber {
 public:
  explicit Subscriber(const std::shared_ptr<SharedEncoders>& encoders) : fPictures(encoders) {}

  // Packets that came. Each must be decodable and, the last, like the frame that it is made of.
  int take(const std::shared_ptr<const Frame>& of, int rate = kRate,
           const ImageFormat& format = kFormat, int fps = 30) {
    fPictures.take(of, format, fps, rate);
    int packets = 0;
    while (const auto packet = fPictures.next()) {
      ++packets;
      keys += packet->made.isKey ? 1 : 0;
      rates = packet->made.bitRate;
      EXPECT_EQ(packet->number, ++number);
      const cv::Size size = sizeOf(format.resolution);
      newest = decoder.decode(packet->made.bytes, size.width, size.height, format.colorSpace);
      time = packet->made.time;
    }
    if (packets > 0 && time == of->time()) {
      EXPECT_GT(likenessOfLuminance(newest, of->pixels(format), format.colorSpace), 25);
    }
    return packets;
  }
  void restart() { fPictures.restart(); }
  void rest() { fPictures.rest(); }

  int keys = 0;
  int rates = 0;
  std::int64_t number = 0;
  std::int64_t time = 0;
  Ky::KyBinary newest;
  Ky::PictureDecoder decoder;

 private:
  EncodedPictures fPictures;
};

class SharedEncodersTest : public testing::Test {
 protected:
  std::shared_ptr<SharedEncoders> encoders = std::make_shared<SharedEncoders>();
};

TEST_F(SharedEncodersTest, TwentySubscribersCostOneEncoding) {
  std::vector<std::unique_ptr<Subscriber>> all(20);
  for (auto& each : all) each = std::make_unique<Subscriber>(encoders);
  for (int i = 0; i < 10; ++i) {
    const auto of = frame(i);
    for (auto& each : all) each->take(of);
  }
  EXPECT_EQ(encoders->encoders(), 1u);
  EXPECT_EQ(encoders->encoded(), 10u);
  for (auto& each : all) {
    EXPECT_EQ(each->number, 10);
    EXPECT_EQ(each->keys, 1);
  }
}

TEST_F(SharedEncodersTest, SubscribersOnThreadsOfTheirOwnGetWholeChains) {
  std::vector<std::shared_ptr<const Frame>> frames;
  for (int i = 0; i < 30; ++i) frames.push_back(frame(i));
  std::vector<std::thread> threads;
  for (int each = 0; each < 4; ++each)
    threads.emplace_back([&] {
      Subscriber subscriber(encoders);
      for (const auto& of : frames) subscriber.take(of);
      EXPECT_GT(subscriber.number, 0);
    });
  for (auto& thread : threads) thread.join();
  EXPECT_LE(encoders->encoded(), 4u * 30);
  EXPECT_EQ(encoders->encoders(), 0u);
}

TEST_F(SharedEncodersTest, WhoJoinsGetsAKeyFrameWithTheNextPicture) {
  Subscriber first(encoders);
  Subscriber second(encoders);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(first.take(frame(i)), 1);
  const auto shared = frame(5);
  EXPECT_EQ(first.take(shared), 1);
  EXPECT_EQ(second.take(shared), 0) << "it is encoded already, and not as a key frame";
  EXPECT_EQ(first.take(frame(6)), 1);
  EXPECT_EQ(second.take(frame(6)), 1);
  EXPECT_EQ(second.keys, 1);
  EXPECT_EQ(first.keys, 2);
  EXPECT_EQ(encoders->encoded(), 7u);
}

TEST_F(SharedEncodersTest, WhoSkipsPicturesGetsThePacketsBetweenToo) {
  Subscriber steady(encoders);
  Subscriber late(encoders);
  for (int i = 0; i < 10; ++i) {
    const auto of = frame(i);
    steady.take(of);
    if (i == 0 || i == 9) {
      EXPECT_EQ(late.take(of), i == 0 ? 1 : 9);
    }
  }
  EXPECT_EQ(late.keys, 1);
  EXPECT_EQ(late.time, steady.time);
}

TEST_F(SharedEncodersTest, WhoFellTooFarBehindGoesOnWithAKeyFrame) {
  Subscriber steady(encoders);
  Subscriber late(encoders);
  late.take(frame(0));
  for (int i = 0; i < 40; ++i) steady.take(frame(i));
  late.take(frame(40));
  EXPECT_EQ(late.keys, 2);
  EXPECT_EQ(late.number, 2);
}

TEST_F(SharedEncodersTest, AfterALossThereIsAKeyFrame) {
  Subscriber subscriber(encoders);
  for (int i = 0; i < 5; ++i) subscriber.take(frame(i));
  EXPECT_EQ(subscriber.keys, 1);
  subscriber.restart();
  EXPECT_EQ(subscriber.take(frame(5)), 1);
  EXPECT_EQ(subscriber.keys, 2);
}

TEST_F(SharedEncodersTest, PicturesThatSubscribersChooseInTurnsAreEncodedOnce) {
  Subscriber even(encoders);
  Subscriber odd(encoders);
  for (int i = 0; i < 20; ++i) (i % 2 == 0 ? even : odd).take(frame(i), kRate, kFormat, 15);
  EXPECT_LE(encoders->encoded(), 11u);
  EXPECT_GE(odd.number, 9);
}

TEST_F(SharedEncodersTest, TheLeastOfTheWishesIsTheBitRateOfAll) {
  Subscriber wide(encoders);
  Subscriber narrow(encoders);
  for (int i = 0; i < 2; ++i) {
    const auto of = frame(i);
    wide.take(of, 1900000);
    narrow.take(of, 1200000);
  }
  wide.take(frame(2), 1900000);
  EXPECT_EQ(wide.rates, 1200000);
  narrow.rest();
  wide.take(frame(3), 1900000);
  EXPECT_EQ(wide.rates, 1900000);
}

TEST_F(SharedEncodersTest, WhoIsAloneChangesTheRateWithoutAKeyFrame) {
  Subscriber subscriber(encoders);
  int number = 0;
  for (const int rate : {1500000, 700000, 200000, 60000, 3000000, 20000000})
    subscriber.take(frame(number++), rate);
  EXPECT_EQ(subscriber.keys, 1);
  EXPECT_EQ(subscriber.number, number);
  EXPECT_EQ(subscriber.rates, 20000000);
  EXPECT_EQ(encoders->encoders(), 1u);
}

TEST_F(SharedEncodersTest, WhoseLinkCarriesMuchLessHasAnEncoderOfHisOwn) {
  Subscriber wide(encoders);
  Subscriber narrow(encoders);
  wide.take(frame(0), 1500000);
  narrow.take(frame(0), 1500000);
  wide.take(frame(1), 1500000);
  narrow.take(frame(1), 900000);
  EXPECT_EQ(encoders->encoders(), 2u);
  EXPECT_EQ(narrow.rates, 900000);
  narrow.take(frame(2), 1200000);
  EXPECT_EQ(encoders->encoders(), 2u) << "around the limit it stays";
  narrow.take(frame(3), 1700000);
  EXPECT_EQ(encoders->encoders(), 1u);
}

TEST_F(SharedEncodersTest, EachCameraFormatAndFrameRateHasAnEncoder) {
  Subscriber subscribers[] = {Subscriber(encoders), Subscriber(encoders), Subscriber(encoders),
                              Subscriber(encoders)};
  subscribers[0].take(frame(0), kRate, {1, kYuv422}, 30);
  subscribers[1].take(frame(0, 1), kRate, {1, kYuv422}, 30);
  subscribers[2].take(frame(0), kRate, {1, kGrey}, 30);
  subscribers[3].take(frame(0), kRate, {1, kYuv422}, 10);
  EXPECT_EQ(encoders->encoders(), 4u);
  subscribers[0].take(frame(1), kRate, {0, kYuv422}, 30);
  EXPECT_EQ(encoders->encoders(), 4u);
  EXPECT_EQ(subscribers[0].keys, 2);
}

}  // namespace
}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/picture_encoder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ky/error.h"
#include "likeness.h"
#include "moving_scene.h"
#include "video/picture_decoder.h"

namespace {

using robot::EncodedPicture;
using robot::EncoderSettings;
using robot::ImageFormat;
using robot::PictureEncoder;

constexpr ImageFormat kSmallest{0, robot::kYuv422};
constexpr ImageFormat kUsual{2, robot::kYuv422};

std::string errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Ky::KyError& error) {
    return error.what();
  }
  return "";
}

// Bits of the pictures `first` to `last` of the moving scene, and whether one is a key frame.
struct Sent {
  double bits = 0;
  double largest = 0;
  int keys = 0;
};

Sent send(PictureEncoder& encoder, const MovingScene& scene, int first, int last) {
  Sent sent;
  for (int i = first; i <= last; ++i) {
    const EncodedPicture picture = encoder.encode(scene.picture(i), false);
    const double bits = 8.0 * static_cast<double>(picture.bytes.size());
    sent.bits += bits;
    sent.largest = std::max(sent.largest, bits);
    sent.keys += picture.isKey ? 1 : 0;
  }
  return sent;
}

class EveryFormat : public ::testing::TestWithParam<ImageFormat> {};

TEST_P(EveryFormat, ComesBackAsTheRecordThatWasEncoded) {
  const ImageFormat format = GetParam();
  const cv::Size size = robot::sizeOf(format.resolution);
  const MovingScene scene(format);
  PictureEncoder encoder({format, 30, 40000000});
  Ky::PictureDecoder decoder;
  for (int i = 0; i < 3; ++i) {
    const Ky::KyBinary original = scene.picture(i);
    const Ky::KyBinary decoded = decoder.decode(encoder.encode(original, false).bytes, size.width,
                                                size.height, format.colorSpace);
    ASSERT_EQ(decoded.size(), original.size());
    EXPECT_GT(likenessOfLuminance(decoded, original, format.colorSpace), 35) << i;
    if (format.colorSpace == robot::kGrey) continue;
    const std::size_t step = format.colorSpace == robot::kYuv422 ? 4 : 3;
    EXPECT_GT(likeness(decoded, original, 1, step), 35) << i;                  // U
    EXPECT_GT(likeness(decoded, original, step == 4 ? 3 : 2, step), 35) << i;  // V
  }
}

std::string nameOf(const ::testing::TestParamInfo<ImageFormat>& info) {
  return "Size" + std::to_string(info.param.resolution) + "ColorSpace" +
         std::to_string(info.param.colorSpace);
}

std::vector<ImageFormat> everyFormat() {
  std::vector<ImageFormat> formats;
  for (int resolution = 0; resolution < robot::kResolutions; ++resolution)
    for (int colorSpace : {robot::kGrey, robot::kYuv422, robot::kYuv444})
      formats.push_back({resolution, colorSpace});
  return formats;
}

INSTANTIATE_TEST_SUITE_P(PictureEncoder, EveryFormat, ::testing::ValuesIn(everyFormat()), nameOf);

TEST(PictureEncoder, NeighboursShareTheMeanOfTheirChrominance) {
  std::vector<std::uint8_t> pixels;
  for (int i = 0; i < 160 * 120 / 2; ++i) pixels.insert(pixels.end(), {100, 60, 180, 100, 90, 150});
  PictureEncoder encoder({{0, robot::kYuv444}, 30, 5000000});
  const Ky::KyBinary decoded = Ky::PictureDecoder().decode(
      encoder.encode(Ky::KyBinary(pixels), false).bytes, 160, 120, robot::kYuv444);
  for (std::size_t i = 0; i < decoded.size(); i += 3) {
    ASSERT_NEAR(decoded.data()[i + 1], 75, 1) << i;
    ASSERT_NEAR(decoded.data()[i + 2], 165, 1) << i;
  }
}

TEST(PictureEncoder, OnlyTheFirstPictureIsAKeyFrameUnlessAnotherIsAskedFor) {
  PictureEncoder encoder({kSmallest, 30, 1000000});
  const MovingScene day(kSmallest, 0), night(kSmallest, 1);
  // Another scene is no reason either, nor is a long time.
  for (int i = 0; i < 400; ++i) {
    const bool wanted = i == 320 || i == 321;
    const EncodedPicture picture =
        encoder.encode((i / 100 % 2 == 0 ? day : night).picture(i), wanted);
    EXPECT_EQ(picture.isKey, i == 0 || wanted) << i;
  }
}

TEST(PictureEncoder, AKeyFrameNeedsNothingOfWhatWasBefore) {
  const MovingScene scene(kSmallest);
  PictureEncoder encoder({kSmallest, 30, 3000000});
  for (int i = 0; i < 5; ++i) encoder.encode(scene.picture(i), false);
  const Ky::KyBinary original = scene.picture(5);
  const Ky::KyBinary decoded =
      Ky::PictureDecoder().decode(encoder.encode(original, true).bytes, 160, 120, robot::kYuv422);
  EXPECT_GT(likenessOfLuminance(decoded, original, robot::kYuv422), 30);
}

TEST(PictureEncoder, KeepsTheBitRateAndNoPictureTakesLong) {
  const MovingScene scene(kUsual);
  for (int bitRate : {1000000, 2000000, 5000000}) {
    PictureEncoder encoder({kUsual, 30, bitRate});
    const Sent sent = send(encoder, scene, 0, 59);
    EXPECT_NEAR(sent.bits / 2, bitRate, 0.15 * bitRate);  // 60 pictures are two seconds
    EXPECT_LT(sent.largest, 1.2 * bitRate / 30) << bitRate;
  }
}

TEST(PictureEncoder, NoPictureTakesLongerAfterALongRestThanBefore) {
  const MovingScene scene(kUsual);
  const Ky::KyBinary still = scene.picture(0);
  PictureEncoder encoder({kUsual, 30, 2000000});
  for (int i = 0; i < 200; ++i) encoder.encode(still, false);
  const Sent sent = send(encoder, scene, 1, 30);
  EXPECT_LT(sent.largest, 1.2 * 2000000 / 30);
  EXPECT_LT(sent.bits, 1.15 * 2000000);
}

TEST(PictureEncoder, AnotherBitRateHoldsAtOnceWithoutAKeyFrame) {
  const MovingScene scene(kUsual);
  PictureEncoder encoder({kUsual, 30, 4000000});
  send(encoder, scene, 0, 29);
  encoder.setBitRate(1000000);
  const Sent low = send(encoder, scene, 30, 59);
  EXPECT_EQ(low.keys, 0);
  EXPECT_NEAR(low.bits, 1000000, 150000);
  EXPECT_LT(low.largest, 1.2 * 1000000 / 30);
  encoder.setBitRate(6000000);
  const Sent high = send(encoder, scene, 60, 89);
  EXPECT_EQ(high.keys, 0);
  EXPECT_NEAR(high.bits, 6000000, 900000);
}

TEST(PictureEncoder, MoreBitsMakeABetterPicture) {
  const MovingScene scene(kUsual);
  std::vector<double> means;
  for (int bitRate : {1000000, 2000000, 5000000}) {
    PictureEncoder encoder({kUsual, 30, bitRate});
    Ky::PictureDecoder decoder;
    double sum = 0;
    for (int i = 0; i < 30; ++i) {
      const Ky::KyBinary original = scene.picture(i);
      sum += likenessOfLuminance(
          decoder.decode(encoder.encode(original, false).bytes, 640, 480, robot::kYuv422), original,
          robot::kYuv422);
    }
    means.push_back(sum / 30);
  }
  EXPECT_GT(means[0], 30);
  EXPECT_GT(means[1], means[0] + 2);
  EXPECT_GT(means[2], means[1] + 2);
}

TEST(PictureEncoder, SaysWhatIsWrongWithItsSettings) {
  const auto errorWith = [](const EncoderSettings& settings) {
    return errorOf([&] { PictureEncoder encoder(settings); });
  };
  EXPECT_EQ(errorWith({kSmallest, 30, 1000000, "fast"}),
            "there is no encoder \"fast\" for H.264 here; \"libx264\" is always there");
  EXPECT_EQ(errorWith({kSmallest, 30, 1000000, "mpeg4"}),
            "there is no encoder \"mpeg4\" for H.264 here; \"libx264\" is always there");
  EXPECT_EQ(errorWith({kSmallest, 30, 1000000, "libx264rgb"}),
            "the encoder \"libx264rgb\" can't take color space 9; \"libx264\" takes all");
  EXPECT_EQ(errorWith({kSmallest, 0, 1000000}), "a frame rate of 0 is not possible; it is 1 to 30");
  EXPECT_EQ(errorWith({{0, 11}, 30, 1000000}), "there is no color space 11; it is 0, 9 or 10");
  EXPECT_NE(errorWith({{4, 9}, 30, 1000000}), "");
  EXPECT_EQ(errorWith({kSmallest, 30, 49999}),
            "a bit rate of 49999 is not possible; it is 50000 to 100000000 bits a second");
}

TEST(PictureEncoder, WorksAtBothEndsOfItsBitRates) {
  const MovingScene scene(kSmallest);
  for (int bitRate : {PictureEncoder::kMinBitRate, PictureEncoder::kMaxBitRate})
    for (int fps : {1, 30}) {
      PictureEncoder encoder({kSmallest, fps, bitRate});
      EXPECT_FALSE(encoder.encode(scene.picture(0), false).bytes.empty()) << bitRate << ' ' << fps;
    }
}

TEST(PictureEncoder, RefusesWhatCantBeEncodedAndGoesOn) {
  const MovingScene scene(kSmallest);
  PictureEncoder encoder({kSmallest, 30, 1000000});
  EXPECT_EQ(errorOf([&] { encoder.setBitRate(100000001); }),
            "a bit rate of 100000001 is not possible; it is 50000 to 100000000 bits a second");
  EXPECT_EQ(errorOf([&] { encoder.encode(Ky::KyBinary::copyOf("x", 1), false); }),
            "a picture to encode has 1 bytes; its format needs 38400");
  EXPECT_TRUE(encoder.encode(scene.picture(0), false).isKey);
}

}  // namespace

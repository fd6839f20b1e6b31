// SPDX-License-Identifier: Apache-2.0
#include "video/picture_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "ky/error.h"
#include "moving_scene.h"
#include "robot/streaming/picture_encoder.h"

namespace {

using Ky::KyBinary;
using Ky::PictureDecoder;

constexpr int kWidth = 160;
constexpr int kHeight = 120;
constexpr int kColorSpace = 9;

KyBinary decode(PictureDecoder& decoder, const KyBinary& packet) {
  return decoder.decode(packet, kWidth, kHeight, kColorSpace);
}

// What decoding throws; "" when it brings a picture, which then has its size.
std::string errorOf(PictureDecoder& decoder, const KyBinary& packet, int width = kWidth,
                    int height = kHeight, int colorSpace = kColorSpace) {
  try {
    const KyBinary pixels = decoder.decode(packet, width, height, colorSpace);
    EXPECT_EQ(pixels.size(), static_cast<std::size_t>(width * height) *
                                 static_cast<std::size_t>(robot::layersOf(colorSpace)));
  } catch (const Ky::KyError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.what();
  }
  return "";
}

bool saysThat(const std::string& error, const std::string& text) {
  return error.find(text) != std::string::npos;
}

// Packets of the moving scene, the first and number 3 key frames.
class PictureDecoderTest : public ::testing::Test {
 protected:
  PictureDecoderTest() {
    robot::PictureEncoder encoder({{0, kColorSpace}, 30, 450000});
    for (int i = 0; i < 6; ++i) fPackets.push_back(encoder.encode(fScene.picture(i), i == 3).bytes);
    PictureDecoder decoder;
    for (const KyBinary& packet : fPackets) fPictures.push_back(decode(decoder, packet));
  }

  const KyBinary& key() const { return fPackets[3]; }
  const KyBinary& pictureOfKey() const { return fPictures[3]; }

  MovingScene fScene{{0, kColorSpace}};
  std::vector<KyBinary> fPackets;
  std::vector<KyBinary> fPictures;
};

TEST_F(PictureDecoderTest, BeginsWithAKeyFrameOnly) {
  PictureDecoder decoder;
  EXPECT_NE(errorOf(decoder, fPackets[1]), "");
  EXPECT_NE(errorOf(decoder, fPackets[2]), "");
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
  EXPECT_EQ(decode(decoder, fPackets[4]), fPictures[4]);
}

TEST_F(PictureDecoderTest, TakesNoPictureForAKeyFrameThatOnlyBringsItsHeaders) {
  const std::vector<std::uint8_t> key(fPackets[0].data(), fPackets[0].data() + fPackets[0].size());
  const std::vector<std::uint8_t> startOfSlice = {0, 0, 1, 0x65};
  std::vector<std::uint8_t> bytes(
      key.begin(), std::search(key.begin(), key.end(), startOfSlice.begin(), startOfSlice.end()));
  ASSERT_LT(bytes.size(), key.size());
  bytes.insert(bytes.end(), fPackets[1].data(), fPackets[1].data() + fPackets[1].size());
  PictureDecoder decoder;
  EXPECT_NE(errorOf(decoder, KyBinary(std::move(bytes))), "");
  EXPECT_NE(errorOf(decoder, fPackets[2]), "");
}

TEST_F(PictureDecoderTest, WaitsForAKeyFrameAfterReset) {
  PictureDecoder decoder;
  decode(decoder, fPackets[0]);
  decoder.reset();
  EXPECT_NE(errorOf(decoder, fPackets[1]), "");
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
}

TEST_F(PictureDecoderTest, WaitsForAKeyFrameAfterAnError) {
  PictureDecoder decoder;
  decode(decoder, fPackets[0]);
  EXPECT_NE(errorOf(decoder, KyBinary::copyOf("nonsense", 8)), "");
  EXPECT_NE(errorOf(decoder, fPackets[1]), "");
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
}

TEST_F(PictureDecoderTest, SurvivesAGapThatNobodyToldOf) {
  PictureDecoder decoder;
  decode(decoder, fPackets[0]);
  errorOf(decoder, fPackets[2]);
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
}

TEST_F(PictureDecoderTest, RefusesEveryTruncatedPacketAndGoesOnWithTheNextKeyFrame) {
  for (const std::size_t which : {0u, 1u})
    for (std::size_t size = 0; size < fPackets[which].size(); ++size) {
      PictureDecoder decoder;
      if (which == 1) decode(decoder, fPackets[0]);
      EXPECT_NE(errorOf(decoder, KyBinary::copyOf(fPackets[which].data(), size)), "")
          << size << " bytes of " << fPackets[which].size() << " of packet " << which;
      EXPECT_EQ(decode(decoder, key()), pictureOfKey());
    }
}

TEST_F(PictureDecoderTest, SurvivesFlippedBitsAndGoesOnWithTheNextKeyFrame) {
  std::minstd_rand random(1);
  for (int round = 0; round < 1000; ++round) {
    const KyBinary& whole = fPackets[static_cast<std::size_t>(round) % 2];
    std::vector<std::uint8_t> bytes(whole.data(), whole.data() + whole.size());
    // Half of them where the headers are.
    const std::size_t range =
        round % 4 < 2 ? std::min<std::size_t>(60, bytes.size()) : bytes.size();
    for (int i = 0; i <= round % 8; ++i) bytes[random() % range] ^= 1 << random() % 8;
    PictureDecoder decoder;
    if (round % 2 == 1) decode(decoder, fPackets[0]);
    errorOf(decoder, KyBinary(std::move(bytes)));
    EXPECT_EQ(decode(decoder, key()), pictureOfKey()) << round;
  }
}

TEST_F(PictureDecoderTest, RefusesNoiseOfEverySize) {
  std::minstd_rand random(1);
  PictureDecoder decoder;
  for (std::size_t size : {1u, 3u, 4u, 100u, 10000u, 1000000u}) {
    std::vector<std::uint8_t> bytes(size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8);
    EXPECT_NE(errorOf(decoder, KyBinary(std::move(bytes))), "") << size;
  }
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
}

TEST_F(PictureDecoderTest, RefusesPacketsThatAreTooLarge) {
  PictureDecoder decoder;
  EXPECT_TRUE(saysThat(errorOf(decoder, KyBinary(std::vector<std::uint8_t>(3686401))),
                       "a video packet has 3686401 bytes; 3686400 are possible"));
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
}

#ifndef PERISCOPE_SANITIZED  // sanitizers have their own ways with memory
// The most that this process has ever mapped.
long mappedKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmPeak:", 0) == 0) return std::stol(line.substr(7));
  throw std::runtime_error("the system does not tell how much is mapped");
}

TEST_F(PictureDecoderTest, TakesNoMemoryForAPictureThatIsTooLarge) {
  // The headers and the beginning of a picture of 4096 x 4096, which would take 32 MB.
  std::vector<std::uint8_t> packet = {0x00, 0x00, 0x00, 0x01, 0x67, 0x7a, 0x00, 0x3c, 0xbc, 0xb4,
                                      0x00, 0x80, 0x00, 0x40, 0x36, 0x02, 0x20, 0x00, 0x00, 0x03,
                                      0x00, 0x20, 0x00, 0x00, 0x06, 0x51, 0xe1, 0x00, 0x85, 0x40,
                                      0x00, 0x00, 0x00, 0x01, 0x68, 0xce, 0x0f, 0xc8, 0x00, 0x00,
                                      0x01, 0x65, 0x88, 0x84, 0x3a, 0x26, 0x28, 0x0c};
  packet.resize(200, 0x9c);
  PictureDecoder decoder;
  decode(decoder, key());
  const long before = mappedKilobytes();
  EXPECT_NE(errorOf(decoder, KyBinary(std::move(packet))), "");
  EXPECT_LT(mappedKilobytes() - before, 16000);
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
}
#endif

TEST_F(PictureDecoderTest, RefusesAnotherSizeThanItIsTold) {
  PictureDecoder decoder;
  EXPECT_TRUE(saysThat(errorOf(decoder, key(), 320, 240),
                       "holds a picture of 160 x 120 pixels instead of 320 x 240"));
  EXPECT_EQ(decode(decoder, key()), pictureOfKey());
  // As when the resolution changes, and the packets say so too late.
  robot::PictureEncoder larger({{1, kColorSpace}, 30, 1500000});
  const KyBinary packet = larger.encode(MovingScene({1, kColorSpace}).picture(0), false).bytes;
  EXPECT_NE(errorOf(decoder, packet), "");
  EXPECT_EQ(errorOf(decoder, packet, 320, 240), "");
}

TEST_F(PictureDecoderTest, RefusesPlanesThatTheColorSpaceDoesNotHave) {
  robot::PictureEncoder grey({{0, robot::kGrey}, 30, 1500000});
  const KyBinary packet = grey.encode(MovingScene({0, robot::kGrey}).picture(0), false).bytes;
  PictureDecoder decoder;
  for (int colorSpace : {9, 10})
    EXPECT_TRUE(saysThat(errorOf(decoder, packet, kWidth, kHeight, colorSpace),
                         "holds other kinds of planes than color space"));
  EXPECT_TRUE(saysThat(errorOf(decoder, key(), kWidth, kHeight, 0),
                       "holds other kinds of planes than color space 0 needs"));
  EXPECT_EQ(errorOf(decoder, packet, kWidth, kHeight, 0), "");
}

TEST_F(PictureDecoderTest, RefusesSizesAndColorSpacesThatNoPictureHas) {
  PictureDecoder decoder;
  for (const auto& [width, height] : {std::pair{0, 120},
                                      {160, 0},
                                      {-160, 120},
                                      {161, 120},
                                      {1282, 960},
                                      {1280, 961},
                                      {1 << 30, 1 << 30}})
    EXPECT_TRUE(saysThat(errorOf(decoder, key(), width, height), "a video picture can't have"));
  EXPECT_TRUE(saysThat(errorOf(decoder, key(), kWidth, kHeight, 11),
                       "can't have color space 11; 0, 9 and 10 are possible"));
}

TEST_F(PictureDecoderTest, GoesOnAfterARunOfOrdinaryPicturesWithAnotherFormat) {
  PictureDecoder decoder;
  for (const int resolution : {0, 3, 1}) {
    const cv::Size size = robot::sizeOf(resolution);
    robot::PictureEncoder encoder({{resolution, 10}, 30, 3000000});
    const MovingScene scene({resolution, 10});
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(errorOf(decoder, encoder.encode(scene.picture(i), false).bytes, size.width,
                        size.height, 10),
                "");
  }
}

}  // namespace

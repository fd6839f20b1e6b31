// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/frame_picture.h"

#include <gtest/gtest.h>

#include <numeric>

#include "frames.h"
#include "viewer/acquisition/yuv_conversion.h"

namespace {

struct Kind {
  int colorSpace;
  int width;
  int height;
};

std::size_t bytesOf(const Kind& kind) {
  const auto pixels = static_cast<std::size_t>(kind.width * kind.height);
  return kind.colorSpace == 0 ? pixels : kind.colorSpace == 10 ? pixels * 3 : pixels * 2;
}

Frame frameOf(const Kind& kind) {
  std::vector<std::uint8_t> pixels(bytesOf(kind));
  std::uint32_t state = 7;
  for (std::uint8_t& byte : pixels)
    byte = static_cast<std::uint8_t>((state = state * 1664525U + 1013904223U) >> 24U);
  Frame frame;
  frame.pixels = Ky::KyBinary(std::move(pixels));
  frame.width = kind.width;
  frame.height = kind.height;
  frame.colorSpace = kind.colorSpace;
  return frame;
}

class PictureOfFrame : public testing::TestWithParam<Kind> {};

TEST_P(PictureOfFrame, ShowsEachPixelInTheColourOfItsYuv) {
  const Frame frame = frameOf(GetParam());
  const QImage picture = pictureOf(frame);
  ASSERT_EQ(picture.size(), QSize(frame.width, frame.height));
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x) {
      const YuvPixel yuv = yuvAt(frame, {x, y});
      const std::uint32_t expected =
          frame.colorSpace == 0 ? yuv::greyPixel(yuv.y) : yuv::pixel(yuv.y, yuv.u, yuv.v);
      ASSERT_EQ(picture.pixel(x, y), expected) << x << ", " << y;
    }
}

INSTANTIATE_TEST_SUITE_P(, PictureOfFrame,
                         testing::Values(Kind{9, 160, 120}, Kind{9, 320, 240}, Kind{9, 33, 5},
                                         Kind{9, 1, 3}, Kind{0, 320, 240}, Kind{0, 33, 5},
                                         Kind{10, 320, 240}, Kind{10, 33, 5}));

TEST(YuvAt, SharesTheChrominancesOfAPair) {
  Frame frame;
  frame.pixels = Ky::KyBinary(std::vector<std::uint8_t>{10, 20, 30, 40, 50, 60});
  frame.width = 3;
  frame.height = 1;
  EXPECT_EQ(yuvAt(frame, {0, 0}), (YuvPixel{10, 20, 40}));
  EXPECT_EQ(yuvAt(frame, {1, 0}), (YuvPixel{30, 20, 40}));
  EXPECT_EQ(yuvAt(frame, {2, 0}), (YuvPixel{50, 20, 40}));  // half a pair
}

TEST(YuvAt, SaysThatGreyHasNoColour) {
  const Frame frame = markedFrame({2, 2});
  EXPECT_EQ(yuvAt(frame, {1, 1}), (YuvPixel{16 + 38, 128, 128}));
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// The plain formula, which the other tests of the conversion compare against.
#include <gtest/gtest.h>

#include <cmath>

#include "viewer/acquisition/yuv_conversion.h"

namespace {

std::uint32_t bgra(std::uint32_t blue, std::uint32_t green, std::uint32_t red) {
  return 0xFF000000U | red << 16 | green << 8 | blue;
}

std::uint32_t byte(double value) {
  return static_cast<std::uint32_t>(std::clamp(static_cast<int>(value), 0, 255));
}

std::uint32_t pixelInDoublePrecision(int luminance, int chrominanceU, int chrominanceV) {
  const double y = (luminance - 16) * double{1.164F};
  const double u = chrominanceU - 128;
  const double v = chrominanceV - 128;
  return bgra(byte(y + double{2.018F} * u), byte(y - double{0.813F} * u - double{0.391F} * v),
              byte(y + double{1.596F} * v));
}

std::uint32_t pixelWithFusedOperations(int luminance, int chrominanceU, int chrominanceV) {
  const float y = static_cast<float>(luminance - 16) * 1.164F;
  const auto u = static_cast<float>(chrominanceU - 128);
  const auto v = static_cast<float>(chrominanceV - 128);
  return bgra(byte(std::fma(2.018F, u, y)), byte(std::fma(-0.391F, v, std::fma(-0.813F, u, y))),
              byte(std::fma(1.596F, v, y)));
}

template <class Formula>
int differentTriples(Formula formula) {
  int count = 0;
  for (int u = 0; u < 256; ++u)
    for (int v = 0; v < 256; ++v)
      for (int y = 0; y < 256; ++y) count += formula(y, u, v) != yuv::pixel(y, u, v) ? 1 : 0;
  return count;
}

}  // namespace

TEST(YuvFormula, GivesBlackForTheDarkestVideoLevel) {
  EXPECT_EQ(yuv::pixel(16, 128, 128), bgra(0, 0, 0));
}

TEST(YuvFormula, TruncatesTheBrightestVideoLevelTo254) {
  EXPECT_EQ(yuv::pixel(235, 128, 128), bgra(254, 254, 254));
}

TEST(YuvFormula, ClampsBelowBlackAndAboveWhite) {
  EXPECT_EQ(yuv::pixel(0, 128, 128), bgra(0, 0, 0));
  EXPECT_EQ(yuv::pixel(255, 128, 128), bgra(255, 255, 255));
  EXPECT_EQ(yuv::pixel(255, 255, 128) & 0xFF, 255U);
}

TEST(YuvFormula, WeightsGreenByItsOwnPairOfFactors) {
  // y = 97.776; u alone takes 0.813 * 100, v alone 0.391 * 100
  EXPECT_EQ(yuv::pixel(100, 228, 128) >> 8 & 0xFF, 16U);
  EXPECT_EQ(yuv::pixel(100, 128, 228) >> 8 & 0xFF, 58U);
}

TEST(YuvFormula, AddsBlueFromUAndRedFromV) {
  EXPECT_EQ(yuv::pixel(100, 138, 128), bgra(117, 89, 97));
  EXPECT_EQ(yuv::pixel(100, 128, 138), bgra(97, 93, 113));
}

TEST(YuvFormula, GivesGreyWithoutChrominance) {
  for (int y = 0; y < 256; ++y) EXPECT_EQ(yuv::greyPixel(y), yuv::pixel(y, 128, 128));
}

// Were it computed otherwise, one of these would agree with it everywhere.
TEST(YuvFormula, IsSinglePrecisionWithoutFusedOperations) {
  EXPECT_EQ(differentTriples(pixelInDoublePrecision), 12234);
  EXPECT_GT(differentTriples(pixelWithFusedOperations), 1000);
}

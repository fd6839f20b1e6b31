// SPDX-License-Identifier: Apache-2.0
// This file is compiled once for every instruction set; the best one that the processor has is
// chosen when it runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "viewer/acquisition/yuv_conversion.cpp"
// clang-format off: this must come before the others.
#include "hwy/foreach_target.h"
// clang-format on
#include <cstring>

#include "hwy/highway.h"
#include "viewer/acquisition/yuv_conversion.h"
#include "viewer/acquisition/yuv_vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace yuv::HWY_NAMESPACE {
namespace {

void storePixel(std::uint32_t pixel, std::uint8_t* out) {
  std::memcpy(out, &pixel, sizeof pixel);
}

void pairs422(const std::uint8_t* in, std::size_t pairs, std::uint8_t* out) {
  for (std::size_t i = pairs422Vectors(in, pairs, out); i < pairs; ++i) {
    const std::uint8_t* pair = in + i * 4;
    storePixel(pixel(pair[0], pair[1], pair[3]), out + i * 8);
    storePixel(pixel(pair[2], pair[1], pair[3]), out + i * 8 + 4);
  }
}

void betweenPairs(const std::uint8_t* in, std::size_t pairs, std::uint8_t* out) {
  for (std::size_t i = betweenPairsVectors(in, pairs, out); i < pairs; ++i) {
    const std::uint8_t* pair = in + i * 4;
    const std::uint8_t* next = pair + 4;
    const int halfU = (pair[1] + next[1]) >> 1;
    const int nearV = (3 * pair[3] + next[3]) >> 2;
    const int farV = (pair[3] + 3 * next[3]) >> 2;
    storePixel(pixel(pair[2], halfU, nearV), out + i * 8);
    storePixel(pixel(next[0], next[1], farV), out + i * 8 + 4);
  }
}

void pixels444(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out) {
  for (std::size_t i = pixels444Vectors(in, pixels, out); i < pixels; ++i)
    storePixel(pixel(in[i * 3], in[i * 3 + 1], in[i * 3 + 2]), out + i * 4);
}

void greyPixels(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out) {
  for (std::size_t i = greyPixelsVectors(in, pixels, out); i < pixels; ++i)
    storePixel(greyPixel(in[i]), out + i * 4);
}

}  // namespace
}  // namespace yuv::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuv {

HWY_EXPORT(pairs422);
HWY_EXPORT(betweenPairs);
HWY_EXPORT(pixels444);
HWY_EXPORT(greyPixels);

namespace {

std::size_t pixelCount(int width, int height) {
  return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

}  // namespace

void convert422(const std::uint8_t* in, int width, int height, std::uint8_t* out) {
  const auto convert = HWY_DYNAMIC_DISPATCH(pairs422);
  if (width % 2 == 0) return convert(in, pixelCount(width, height) / 2, out);
  for (int row = 0; row < height; ++row)
    convert(in + pixelCount(width, row) * 2, static_cast<std::size_t>(width / 2),
            out + pixelCount(width, row) * 4);
}

void convert444(const std::uint8_t* in, int width, int height, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(pixels444)(in, pixelCount(width, height), out);
}

void convertGrey(const std::uint8_t* in, int width, int height, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(greyPixels)(in, pixelCount(width, height), out);
}

void convertSmall422(const std::uint8_t* in, std::uint8_t* out) {
  constexpr std::size_t kPairs = kSmallWidth / 2 - 1;  // the last one only gives its chrominance
  const auto convert = HWY_DYNAMIC_DISPATCH(betweenPairs);
  for (int row = 0; row < kSmallHeight; ++row)
    convert(in + row * kSmallWidth * 2, kPairs, out + row * kSmallWidth * 4 + 4);
}

}  // namespace yuv
#endif

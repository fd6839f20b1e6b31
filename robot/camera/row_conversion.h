// SPDX-License-Identifier: Apache-2.0
// BGR to YUV, a row of pixels at a time, with the processor's best SIMD instructions.
#pragma once

#include <cstdint>

namespace robot {

// ITU-R BT.601 for video: luminance 16..235, chrominance 16..240, within one step of exact. `bgr`
// holds 3 x width bytes, `out` 1, 2 or 3 x width.
void rowToGrey(const std::uint8_t* bgr, int width, std::uint8_t* out);
// Y0 U Y1 V; a pair of pixels shares the chrominance of its mean colour. `width` is even.
void rowToYuv422(const std::uint8_t* bgr, int width, std::uint8_t* out);
void rowToYuv444(const std::uint8_t* bgr, int width, std::uint8_t* out);

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// From the pixels of a screen to the planes that encoders take.
#pragma once

#include <cstddef>
#include <cstdint>

struct AVFrame;

namespace film {

// `pixels`: red in bits 16 to 23 of each, green and blue below, the rest is ignored; rows are
// `stride` pixels apart. `frame`: of the encoder for Look::Screen, of the pixels' size.
void writePlanes(const std::uint32_t* pixels, std::ptrdiff_t stride, AVFrame& frame);

}  // namespace film

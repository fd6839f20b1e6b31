// SPDX-License-Identifier: Apache-2.0
// From the interleaved pixels of an image record to the planes that encoders take.
#pragma once

#include <cstdint>

struct AVFrame;

namespace robot {

// `pixels`: of the frame's size in the colour space. `frame`: 8-bit grey for kGrey, else 4:2:2. Two
// neighbours of kYuv444 share the mean of their chrominance.
void splitIntoPlanes(const std::uint8_t* pixels, int colorSpace, AVFrame& frame);

}  // namespace robot

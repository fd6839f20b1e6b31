// SPDX-License-Identifier: Apache-2.0
// A robot's picture, as it comes over the runtime.
#pragma once

#include <cstdint>

#include "film/libav.h"
#include "ky/binary.h"
#include "ky/value.h"

namespace cli {

// What pictures are asked for in: YUV 4:2:2.
constexpr int kColorSpace = 9;

struct Picture {
  int width = 0;
  int height = 0;
  std::int64_t time = 0;  // microseconds by the robot's clock
  Ky::KyBinary bytes;     // Y, U, Y, V for every two pixels; or a packet of H.264
};

// Of an image record. Throws KyError for what can't be one.
Picture pictureOf(const Ky::KyValue& record);
// Throws KyError when the bytes are not pixels enough.
void requirePixels(const Picture& picture);

// Its luminance and chrominances apart, as AV_PIX_FMT_YUV422P. It has pixels.
film::VideoFrame planesOf(const Picture& picture);

}  // namespace cli

// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/planes.h"

extern "C" {
#include <libavutil/frame.h>
}

#include <algorithm>

#include "robot/camera/image_format.h"

namespace robot {
namespace {

using Byte = std::uint8_t;

// One row of each plane.
struct Rows {
  Byte* __restrict y;
  Byte* __restrict u;
  Byte* __restrict v;
};

void splitGrey(const Byte* __restrict pixels, int width, const Rows& out) {
  std::copy_n(pixels, width, out.y);
}

void split422(const Byte* __restrict pixels, int width, const Rows& out) {
  for (int i = 0; i < width / 2; ++i) {
    out.y[2 * i] = pixels[4 * i];
    out.u[i] = pixels[4 * i + 1];
    out.y[2 * i + 1] = pixels[4 * i + 2];
    out.v[i] = pixels[4 * i + 3];
  }
}

Byte mean(Byte a, Byte b) {
  return static_cast<Byte>((a + b + 1) >> 1);
}

void split444(const Byte* __restrict pixels, int width, const Rows& out) {
  for (int i = 0; i < width / 2; ++i) {
    const Byte* pair = pixels + 6 * i;
    out.y[2 * i] = pair[0];
    out.y[2 * i + 1] = pair[3];
    out.u[i] = mean(pair[1], pair[4]);
    out.v[i] = mean(pair[2], pair[5]);
  }
}

}  // namespace

void splitIntoPlanes(const Byte* pixels, int colorSpace, AVFrame& frame) {
  const auto split = colorSpace == kGrey ? splitGrey : colorSpace == kYuv422 ? split422 : split444;
  const auto row = [&](int plane, int y) {
    return frame.data[plane] ? frame.data[plane] + std::ptrdiff_t{y} * frame.linesize[plane]
                             : nullptr;
  };
  for (int y = 0; y < frame.height; ++y, pixels += frame.width * layersOf(colorSpace))
    split(pixels, frame.width, {row(0, y), row(1, y), row(2, y)});
}

}  // namespace robot

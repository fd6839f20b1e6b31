// SPDX-License-Identifier: Apache-2.0
#include "video/interleaving.h"

extern "C" {
#include <libavutil/frame.h>
}

#include <algorithm>

#include "ky/video_device_proxy.h"

namespace Ky {
namespace {

using Byte = std::uint8_t;

// One row of each plane.
struct Rows {
  const Byte* __restrict y;
  const Byte* __restrict u;
  const Byte* __restrict v;
};

void joinGrey(const Rows& in, int width, Byte* __restrict out) {
  std::copy_n(in.y, width, out);
}

void join422(const Rows& in, int width, Byte* __restrict out) {
  for (int i = 0; i < width / 2; ++i) {
    out[4 * i] = in.y[2 * i];
    out[4 * i + 1] = in.u[i];
    out[4 * i + 2] = in.y[2 * i + 1];
    out[4 * i + 3] = in.v[i];
  }
}

void join444(const Rows& in, int width, Byte* __restrict out) {
  for (int i = 0; i < width / 2; ++i) {
    Byte* pair = out + 6 * i;
    pair[0] = in.y[2 * i];
    pair[1] = pair[4] = in.u[i];
    pair[2] = pair[5] = in.v[i];
    pair[3] = in.y[2 * i + 1];
  }
}

}  // namespace

KyBinary interleaved(const AVFrame& frame, int colorSpace) {
  const auto join = colorSpace == 0 ? joinGrey : colorSpace == 9 ? join422 : join444;
  const std::size_t size = imageBytes(frame.width, frame.height, colorSpace);
  const std::size_t stride = size / static_cast<std::size_t>(frame.height);
  const std::shared_ptr<Byte[]> pixels(new Byte[size]);  // not cleared first
  const auto row = [&](int plane, int y) {
    return frame.data[plane] + std::ptrdiff_t{y} * frame.linesize[plane];
  };
  for (int y = 0; y < frame.height; ++y) {
    const Rows rows =
        colorSpace == 0 ? Rows{row(0, y), nullptr, nullptr} : Rows{row(0, y), row(1, y), row(2, y)};
    join(rows, frame.width, pixels.get() + static_cast<std::size_t>(y) * stride);
  }
  return {pixels, pixels.get(), size};
}

}  // namespace Ky

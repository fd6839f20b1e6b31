// SPDX-License-Identifier: Apache-2.0
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "robot/camera/row_conversion.cpp"
#include "robot/camera/row_conversion.h"

#include <hwy/foreach_target.h>  // compiles this file once for each kind of processor
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace robot {
namespace HWY_NAMESPACE {

using Byte = std::uint8_t;

#if HWY_TARGET == HWY_SCALAR  // one lane has no room for a pair of pixels

Byte weighted(const Byte* p, int b, int g, int r, int offset) {
  return static_cast<Byte>(((b * p[0] + g * p[1] + r * p[2] + 128) >> 8) + offset);
}
Byte luminance(const Byte* p) {
  return weighted(p, 25, 129, 66, 16);
}
Byte chrominanceU(const Byte* p) {
  return weighted(p, 112, -74, -38, 128);
}
Byte chrominanceV(const Byte* p) {
  return weighted(p, -18, -94, 112, 128);
}

void grey(const Byte* bgr, int width, Byte* out) {
  for (int x = 0; x < width; ++x) out[x] = luminance(bgr + 3 * x);
}

void yuv422(const Byte* bgr, int width, Byte* out) {
  for (int x = 0; x < width; x += 2, bgr += 6, out += 4) {
    Byte mean[3];
    for (int i = 0; i < 3; ++i) mean[i] = static_cast<Byte>((bgr[i] + bgr[i + 3] + 1) >> 1);
    out[0] = luminance(bgr);
    out[1] = chrominanceU(mean);
    out[2] = luminance(bgr + 3);
    out[3] = chrominanceV(mean);
  }
}

void yuv444(const Byte* bgr, int width, Byte* out) {
  for (int x = 0; x < width; ++x, bgr += 3, out += 3) {
    out[0] = luminance(bgr);
    out[1] = chrominanceU(bgr);
    out[2] = chrominanceV(bgr);
  }
}

#else

namespace hn = hwy::HWY_NAMESPACE;

constexpr hn::ScalableTag<std::uint8_t> d8;
constexpr hn::ScalableTag<std::uint16_t> d16;
constexpr hn::ScalableTag<std::int16_t> dSigned;
using V8 = hn::Vec<decltype(d8)>;
using V16 = hn::Vec<decltype(d16)>;

// One colour of as many pixels as 16-bit lanes.
struct Bgr16 {
  V16 b, g, r;
};

// The coefficients are in 1/256. All sums fit 16 bits, the chrominances' signed ones too.
HWY_INLINE V16 weighted(const Bgr16& c, int b, int g, int r) {
  const auto times = [](V16 v, int factor) HWY_ATTR {
    return hn::Mul(v, hn::Set(d16, static_cast<std::uint16_t>(factor)));
  };
  return hn::Add(hn::Add(times(c.b, b), times(c.g, g)),
                 hn::Add(times(c.r, r), hn::Set(d16, std::uint16_t{128})));
}

HWY_INLINE V16 luminance(const Bgr16& c) {
  return hn::Add(hn::ShiftRight<8>(weighted(c, 25, 129, 66)), hn::Set(d16, std::uint16_t{16}));
}

HWY_INLINE V16 chrominance(V16 sum) {
  const V16 shifted = hn::BitCast(d16, hn::ShiftRight<8>(hn::BitCast(dSigned, sum)));
  return hn::Add(shifted, hn::Set(d16, std::uint16_t{128}));
}
HWY_INLINE V16 chrominanceU(const Bgr16& c) {
  return chrominance(weighted(c, 112, -74, -38));
}
HWY_INLINE V16 chrominanceV(const Bgr16& c) {
  return chrominance(weighted(c, -18, -94, 112));
}

// Pixels 0, 2, 4, .. and 1, 3, 5, .. of a block.
struct Pairs {
  Bgr16 even, odd;
};

HWY_INLINE Pairs loadPairs(const Byte* bgr) {
  V8 b, g, r;
  hn::LoadInterleaved3(d8, bgr, b, g, r);
  const auto even = [](V8 v) HWY_ATTR {
    return hn::And(hn::BitCast(d16, v), hn::Set(d16, std::uint16_t{255}));
  };
  const auto odd = [](V8 v) HWY_ATTR { return hn::ShiftRight<8>(hn::BitCast(d16, v)); };
  return {{even(b), even(g), even(r)}, {odd(b), odd(g), odd(r)}};
}

// The bytes even0, odd0, even1, odd1, ..
HWY_INLINE V8 zip(V16 even, V16 odd) {
  return hn::BitCast(d8, hn::Or(even, hn::ShiftLeft<8>(odd)));
}

HWY_INLINE V8 luminances(const Pairs& p) {
  return zip(luminance(p.even), luminance(p.odd));
}

struct Grey {
  static constexpr int kLayers = 1;
  static HWY_INLINE void block(const Byte* bgr, Byte* out) {
    hn::StoreU(luminances(loadPairs(bgr)), d8, out);
  }
};

struct Yuv422 {
  static constexpr int kLayers = 2;
  static HWY_INLINE void block(const Byte* bgr, Byte* out) {
    const Pairs p = loadPairs(bgr);
    const Bgr16 mean = {hn::AverageRound(p.even.b, p.odd.b), hn::AverageRound(p.even.g, p.odd.g),
                        hn::AverageRound(p.even.r, p.odd.r)};
    hn::StoreInterleaved2(luminances(p), zip(chrominanceU(mean), chrominanceV(mean)), d8, out);
  }
};

struct Yuv444 {
  static constexpr int kLayers = 3;
  static HWY_INLINE void block(const Byte* bgr, Byte* out) {
    const Pairs p = loadPairs(bgr);
    hn::StoreInterleaved3(luminances(p), zip(chrominanceU(p.even), chrominanceU(p.odd)),
                          zip(chrominanceV(p.even), chrominanceV(p.odd)), d8, out);
  }
};

template <class Format>
void convertRow(const Byte* bgr, int width, Byte* out) {
  const int lanes = static_cast<int>(hn::Lanes(d8));
  int x = 0;
  for (; x + lanes <= width; x += lanes) Format::block(bgr + 3 * x, out + Format::kLayers * x);
  if (x == width) return;
  // The rest of the row, in a block of its own.
  HWY_ALIGN Byte in[3 * HWY_MAX_BYTES] = {};
  HWY_ALIGN Byte converted[3 * HWY_MAX_BYTES];
  for (int i = 0; i < 3 * (width - x); ++i) in[i] = bgr[3 * x + i];
  Format::block(in, converted);
  for (int i = 0; i < Format::kLayers * (width - x); ++i)
    out[Format::kLayers * x + i] = converted[i];
}

void grey(const Byte* bgr, int width, Byte* out) {
  convertRow<Grey>(bgr, width, out);
}
void yuv422(const Byte* bgr, int width, Byte* out) {
  convertRow<Yuv422>(bgr, width, out);
}
void yuv444(const Byte* bgr, int width, Byte* out) {
  convertRow<Yuv444>(bgr, width, out);
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace robot
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace robot {

HWY_EXPORT(grey);
HWY_EXPORT(yuv422);
HWY_EXPORT(yuv444);

void rowToGrey(const std::uint8_t* bgr, int width, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(grey)(bgr, width, out);
}
void rowToYuv422(const std::uint8_t* bgr, int width, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(yuv422)(bgr, width, out);
}
void rowToYuv444(const std::uint8_t* bgr, int width, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(yuv444)(bgr, width, out);
}

}  // namespace robot
#endif

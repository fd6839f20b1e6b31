// SPDX-License-Identifier: Apache-2.0
// The vector part of the conversions, for one instruction set at a time. Every function converts as
// many pixels as fill whole vectors and returns how far it came; the rest is left to plain code.
#if defined(PERISCOPE_YUV_VECTORS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef PERISCOPE_YUV_VECTORS_INL_H
#undef PERISCOPE_YUV_VECTORS_INL_H
#else
#define PERISCOPE_YUV_VECTORS_INL_H
#endif

#include <cstddef>
#include <cstdint>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuv::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

std::size_t pairs422Vectors(const std::uint8_t*, std::size_t, std::uint8_t*) {
  return 0;
}
std::size_t betweenPairsVectors(const std::uint8_t*, std::size_t, std::uint8_t*) {
  return 0;
}
std::size_t pixels444Vectors(const std::uint8_t*, std::size_t, std::uint8_t*) {
  return 0;
}
std::size_t greyPixelsVectors(const std::uint8_t*, std::size_t, std::uint8_t*) {
  return 0;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

#undef PERISCOPE_X86_VECTORS
#define PERISCOPE_X86_VECTORS (HWY_ARCH_X86 && HWY_TARGET <= HWY_SSSE3)

// One 32-bit lane for every pixel, or for every pair of pixels.
#if PERISCOPE_X86_VECTORS
using Lanes = hn::ScalableTag<std::uint32_t>;
#else
using Lanes = hn::CappedTag<std::uint32_t, 4>;
#endif
using Signed = hn::RebindToSigned<Lanes>;
using Floats = hn::RebindToFloat<Lanes>;
using Shorts = hn::Repartition<std::int16_t, Lanes>;
using Words = hn::Repartition<std::uint16_t, Lanes>;
using Bytes = hn::Repartition<std::uint8_t, Lanes>;
using Lane = hn::Vec<Lanes>;
using Float = hn::Vec<Floats>;
using Int = hn::Vec<Signed>;
using Short = hn::Vec<Shorts>;
using Byte = hn::Vec<Bytes>;

// Three operations that Highway offers only with repairs that cost as much as all the rest here:
//
// truncated() rounds toward zero; values beyond the range of an int, which never occur, may give
// anything. packed() puts the lanes of `low`, then those of `high`, into lanes of half the size, in
// each block of 16 bytes on its own; too small and too large values become the nearest possible.
#if PERISCOPE_X86_VECTORS
#if HWY_TARGET <= HWY_AVX3
#define PERISCOPE_X86(operation) _mm512_##operation
#elif HWY_TARGET == HWY_AVX2
#define PERISCOPE_X86(operation) _mm256_##operation
#else
#define PERISCOPE_X86(operation) _mm_##operation
#endif
HWY_INLINE Int truncated(Float value) {
  return Int{PERISCOPE_X86(cvttps_epi32)(value.raw)};
}
HWY_INLINE Short packed(Int low, Int high) {
  return Short{PERISCOPE_X86(packs_epi32)(low.raw, high.raw)};
}
HWY_INLINE Byte packed(Short low, Short high) {
  return Byte{PERISCOPE_X86(packus_epi16)(low.raw, high.raw)};
}
#undef PERISCOPE_X86
#else
HWY_INLINE Int truncated(Float value) {
  return hn::ConvertTo(Signed(), value);
}
HWY_INLINE Short packed(Int low, Int high) {
  const hn::Half<Shorts> half;
  return hn::Combine(Shorts(), hn::DemoteTo(half, high), hn::DemoteTo(half, low));
}
HWY_INLINE Byte packed(Short low, Short high) {
  const hn::Half<Bytes> half;
  return hn::Combine(Bytes(), hn::DemoteTo(half, high), hn::DemoteTo(half, low));
}
#endif

// (byte - offset) * factor, rounded once. `offset` is a power of two, so that offset * factor is
// exact, and a fused multiply and add of it rounds where the plain multiplication does.
HWY_INLINE Float scaled(Float byte, float offset, float factor) {
#if HWY_TARGET <= HWY_AVX2 && HWY_ARCH_X86
  return hn::MulSub(byte, hn::Set(Floats(), factor), hn::Set(Floats(), offset * factor));
#else
  return hn::Mul(hn::Sub(byte, hn::Set(Floats(), offset)), hn::Set(Floats(), factor));
#endif
}

HWY_INLINE Float toFloat(Lane byte) {
  return hn::ConvertTo(Floats(), hn::BitCast(Signed(), byte));
}

HWY_INLINE Float luminance(Lane byte) {
  return scaled(toFloat(byte), 16, 1.164F);
}

// What a pixel's chrominance adds to or takes from its luminance.
struct Chrominance {
  Float blue, greenU, greenV, red;
};

HWY_INLINE Chrominance chrominance(Lane byteU, Lane byteV) {
  const Float u = toFloat(byteU);
  const Float v = toFloat(byteV);
  return {scaled(u, 128, 2.018F), scaled(u, 128, 0.813F), scaled(v, 128, 0.391F),
          scaled(v, 128, 1.596F)};
}

struct Colours {
  Int blue, green, red;
};

HWY_INLINE Colours colours(Float y, const Chrominance& chroma) {
  return {truncated(hn::Add(y, chroma.blue)),
          truncated(hn::Sub(hn::Sub(y, chroma.greenU), chroma.greenV)),
          truncated(hn::Add(y, chroma.red))};
}

// From eight bytes of one colour and eight of another to pairs of both. The first pixels of four
// pairs come before the second ones.
HWY_INLINE hn::Vec<Words> zipped(Byte colours) {
  static constexpr std::uint8_t kPlaces[16] = {0, 8,  4, 12, 1, 9,  5, 13,
                                               2, 10, 6, 14, 3, 11, 7, 15};
  return hn::BitCast(Words(), hn::TableLookupBytes(colours, hn::LoadDup128(Bytes(), kPlaces)));
}

// Writes two pixels a lane, `first` before `second`. With more than one block of 16 bytes, lanes
// must be in BlockwiseOrder.
HWY_INLINE void storePairs(const Colours& first, const Colours& second, std::uint8_t* out) {
  const Short blue = packed(first.blue, second.blue);
  const Short green = packed(first.green, second.green);
  const Short red = packed(first.red, second.red);
  const auto blueGreen = zipped(packed(blue, green));
  const auto redAlpha = zipped(packed(red, hn::Set(Shorts(), std::int16_t{255})));
  hn::StoreU(hn::BitCast(Bytes(), hn::InterleaveLower(Words(), blueGreen, redAlpha)), Bytes(), out);
  hn::StoreU(hn::BitCast(Bytes(), hn::InterleaveUpper(Words(), blueGreen, redAlpha)), Bytes(),
             out + hn::Lanes(Bytes()));
}

// Interleaving works in blocks of 16 bytes; this moves the lanes so that the first halves of the
// blocks, in order, hold the first half of the vector.
class BlockwiseOrder {
 public:
  HWY_INLINE BlockwiseOrder() {
    const std::size_t count = hn::Lanes(Lanes());
    HWY_ALIGN std::int32_t source[hn::MaxLanes(Lanes())];
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t block = i / 4;
      const std::size_t inBlock = i % 4;
      source[i] = static_cast<std::int32_t>(block * 2 + inBlock % 2 + inBlock / 2 * (count / 2));
    }
    fIndices = hn::SetTableIndices(Lanes(), source);
  }
  HWY_INLINE Lane load(const std::uint8_t* in) const {
    const Lane lanes = hn::BitCast(Lanes(), hn::LoadU(Bytes(), in));
    if (hn::Lanes(Lanes()) <= 4) return lanes;
    return hn::TableLookupLanes(lanes, fIndices);
  }

 private:
  decltype(hn::SetTableIndices(Lanes(), static_cast<const std::int32_t*>(nullptr))) fIndices;
};

// Byte number `kIndex` of every lane.
template <std::uint8_t kIndex>
HWY_INLINE Lane byteOf(Lane lanes) {
  if constexpr (kIndex == 0) return hn::And(lanes, hn::Set(Lanes(), 0xFFU));
  if constexpr (kIndex == 3) return hn::ShiftRight<24>(lanes);
  static constexpr std::uint8_t kPlaces[16] = {kIndex,      128, 128,        128, kIndex + 4, 128,
                                               128,         128, kIndex + 8, 128, 128,        128,
                                               kIndex + 12, 128, 128,        128};
  return hn::BitCast(Lanes(), hn::TableLookupBytesOr0(hn::BitCast(Bytes(), lanes),
                                                      hn::LoadDup128(Bytes(), kPlaces)));
}

// Pairs of pixels on their way to their colours.
struct Pairs {
  Float first, second;
  Chrominance chroma;
};

HWY_INLINE Pairs separated(Lane lanes) {
  return {luminance(byteOf<0>(lanes)), luminance(byteOf<2>(lanes)),
          chrominance(byteOf<1>(lanes), byteOf<3>(lanes))};
}

HWY_INLINE void store(const Pairs& pairs, std::uint8_t* out) {
  storePairs(colours(pairs.first, pairs.chroma), colours(pairs.second, pairs.chroma), out);
}

// Y0, U, Y1, V to two pixels. Separates the next pairs while it works on the ones before: one chain
// of operations alone is longer than what a processor looks ahead.
std::size_t pairs422Vectors(const std::uint8_t* in, std::size_t pairs, std::uint8_t* out) {
  const std::size_t step = hn::Lanes(Lanes());
  if (pairs < step) return 0;
  const BlockwiseOrder order;
  Pairs current = separated(order.load(in));
  std::size_t i = 0;
  for (; i + 2 * step <= pairs; i += step) {
    const Pairs next = separated(order.load(in + (i + step) * 4));
    store(current, out + i * 8);
    current = next;
  }
  store(current, out + i * 8);
  return i + step;
}

// The second pixel of every pair and the first one of the pair after it, with interpolated
// chrominance. Reads one pair more than it converts.
std::size_t betweenPairsVectors(const std::uint8_t* in, std::size_t pairs, std::uint8_t* out) {
  const std::size_t step = hn::Lanes(Lanes());
  const BlockwiseOrder order;
  std::size_t i = 0;
  for (; i + step <= pairs; i += step) {
    const Lane pair = order.load(in + i * 4);
    const Lane next = order.load(in + i * 4 + 4);
    const Lane u = byteOf<1>(pair), nextU = byteOf<1>(next);
    const Lane v = byteOf<3>(pair), nextV = byteOf<3>(next);
    const Lane halfU = hn::ShiftRight<1>(hn::Add(u, nextU));
    const Lane nearV = hn::ShiftRight<2>(hn::Add(hn::Add(v, hn::Add(v, v)), nextV));
    const Lane farV = hn::ShiftRight<2>(hn::Add(v, hn::Add(nextV, hn::Add(nextV, nextV))));
    storePairs(colours(luminance(byteOf<2>(pair)), chrominance(halfU, nearV)),
               colours(luminance(byteOf<0>(next)), chrominance(nextU, farV)), out + i * 8);
  }
  return i;
}

// One pixel a lane.
using FewBytes = hn::Rebind<std::uint8_t, Lanes>;

HWY_INLINE Lane clamped(Int value) {
  return hn::BitCast(Lanes(), hn::Min(hn::Max(value, hn::Zero(Signed())), hn::Set(Signed(), 255)));
}

HWY_INLINE void storePixels(const Colours& pixels, std::uint8_t* out) {
  const Lane blueGreen = hn::Or(clamped(pixels.blue), hn::ShiftLeft<8>(clamped(pixels.green)));
  const Lane redAlpha =
      hn::Or(hn::ShiftLeft<16>(clamped(pixels.red)), hn::Set(Lanes(), 0xFF000000U));
  hn::StoreU(hn::BitCast(Bytes(), hn::Or(blueGreen, redAlpha)), Bytes(), out);
}

std::size_t pixels444Vectors(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out) {
  const std::size_t step = hn::Lanes(Lanes());
  std::size_t i = 0;
  for (; i + step <= pixels; i += step) {
    hn::Vec<FewBytes> bytesY, bytesU, bytesV;
    hn::LoadInterleaved3(FewBytes(), in + i * 3, bytesY, bytesU, bytesV);
    const Float y = luminance(hn::PromoteTo(Lanes(), bytesY));
    const Chrominance chroma =
        chrominance(hn::PromoteTo(Lanes(), bytesU), hn::PromoteTo(Lanes(), bytesV));
    storePixels(colours(y, chroma), out + i * 4);
  }
  return i;
}

std::size_t greyPixelsVectors(const std::uint8_t* in, std::size_t pixels, std::uint8_t* out) {
  const std::size_t step = hn::Lanes(Lanes());
  std::size_t i = 0;
  for (; i + step <= pixels; i += step) {
    const Int grey = truncated(luminance(hn::PromoteTo(Lanes(), hn::LoadU(FewBytes(), in + i))));
    storePixels({grey, grey, grey}, out + i * 4);
  }
  return i;
}

#endif  // HWY_TARGET

}  // namespace
}  // namespace yuv::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // per target

// SPDX-License-Identifier: Apache-2.0
// The conversions against the plain formula, on every instruction set that this machine has.
#include "viewer/acquisition/yuv_conversion.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "guarded_bytes.h"
#include "hwy/targets.h"

namespace {

constexpr int kSizes[] = {0, 1, 2, 3, 5, 7, 8, 15, 16, 17, 18, 31, 33, 63, 66, 130};

void onEveryInstructionSet(const std::function<void()>& test) {
  const auto targets = hwy::SupportedTargets();
  for (auto rest = targets; rest != 0; rest &= rest - 1) {
    const auto target = rest & -rest;
    hwy::SetSupportedTargetsForTest(target);
    SCOPED_TRACE(hwy::TargetName(target));
    test();
  }
  hwy::SetSupportedTargetsForTest(0);
}

void fillWithNoise(GuardedBytes& bytes) {
  std::minstd_rand noise(7);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes.data()[i] = static_cast<std::uint8_t>(noise() >> 8);
}

// Runs `convert` on every combination of odd, even, tiny and empty sides.
using Convert = void (*)(const std::uint8_t*, int, int, std::uint8_t*);
using Expected = std::function<std::uint32_t(const std::uint8_t* in, int width, int x, int y)>;
constexpr std::uint32_t kUntouched = 0x5A5A5A5A;

void expectEverySize(Convert convert, int bytesAPixel, const Expected& expected) {
  for (const int width : kSizes) {
    for (const int height : {0, 1, 2, 3}) {
      const auto pixels = static_cast<std::size_t>(width * height);
      GuardedBytes in(pixels * static_cast<std::size_t>(bytesAPixel));
      GuardedBytes out(pixels * 4);
      fillWithNoise(in);
      out.fill(0x5A);
      convert(in.data(), width, height, out.data());
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
          ASSERT_EQ(out.pixel(static_cast<std::size_t>(y * width + x)),
                    expected(in.data(), width, x, y))
              << width << " x " << height << " at " << x << ", " << y;
    }
  }
}

// All pairs of one U: every V with every luminance in both places of a pair.
std::vector<std::uint8_t> pairsOf(int u) {
  std::vector<std::uint8_t> bytes;
  for (int v = 0; v < 256; ++v)
    for (int y = 0; y < 256; ++y)
      for (const int byte : {y, u, 255 - y, v}) bytes.push_back(static_cast<std::uint8_t>(byte));
  return bytes;
}

std::vector<std::uint32_t> pixelsOfPairs(int u) {
  std::vector<std::uint32_t> pixels;
  for (int v = 0; v < 256; ++v)
    for (int y = 0; y < 256; ++y) {
      pixels.push_back(yuv::pixel(y, u, v));
      pixels.push_back(yuv::pixel(255 - y, u, v));
    }
  return pixels;
}

std::vector<std::uint8_t> triplesOf(int u) {
  std::vector<std::uint8_t> bytes;
  for (int v = 0; v < 256; ++v)
    for (int y = 0; y < 256; ++y)
      for (const int byte : {y, u, v}) bytes.push_back(static_cast<std::uint8_t>(byte));
  return bytes;
}

}  // namespace

// Sanitized code is slow, and looks for other mistakes than wrong sums: it tries every 15th U.
#ifdef PERISCOPE_SANITIZED
constexpr int kStep = 15;
#else
constexpr int kStep = 1;
#endif

TEST(YuvConversion, IsExactForAllTriplesInBothPlacesOfAPair) {
  std::vector<std::uint32_t> out(2 * 65536);
  for (int u = 0; u < 256; u += kStep) {
    const auto in = pairsOf(u);
    const auto expected = pixelsOfPairs(u);
    onEveryInstructionSet([&] {
      std::fill(out.begin(), out.end(), 0);
      yuv::convert422(in.data(), 512, 256, reinterpret_cast<std::uint8_t*>(out.data()));
      ASSERT_TRUE(out == expected) << "U = " << u;
    });
    if (HasFatalFailure()) return;
  }
}

TEST(YuvConversion, IsExactForAllTriplesWithoutSubsampling) {
  std::vector<std::uint32_t> out(65536);
  for (int u = 0; u < 256; u += kStep) {
    const auto in = triplesOf(u);
    std::vector<std::uint32_t> expected;
    for (int v = 0; v < 256; ++v)
      for (int y = 0; y < 256; ++y) expected.push_back(yuv::pixel(y, u, v));
    onEveryInstructionSet([&] {
      std::fill(out.begin(), out.end(), 0);
      yuv::convert444(in.data(), 256, 256, reinterpret_cast<std::uint8_t*>(out.data()));
      ASSERT_TRUE(out == expected) << "U = " << u;
    });
    if (HasFatalFailure()) return;
  }
}

TEST(YuvConversion, StaysInsideItsBuffersForPairsOfEverySize) {
  onEveryInstructionSet([] {
    expectEverySize(yuv::convert422, 2,
                    [](const std::uint8_t* in, int width, int x, int y) -> std::uint32_t {
                      if (x == width - 1 && width % 2 == 1) return kUntouched;
                      const std::uint8_t* pair = in + y * width * 2 + x / 2 * 4;
                      return yuv::pixel(pair[x % 2 * 2], pair[1], pair[3]);
                    });
  });
}

TEST(YuvConversion, StaysInsideItsBuffersForTriplesOfEverySize) {
  onEveryInstructionSet([] {
    expectEverySize(yuv::convert444, 3, [](const std::uint8_t* in, int width, int x, int y) {
      const std::uint8_t* triple = in + (y * width + x) * 3;
      return yuv::pixel(triple[0], triple[1], triple[2]);
    });
  });
}

TEST(YuvConversion, StaysInsideItsBuffersForGreyOfEverySize) {
  onEveryInstructionSet([] {
    expectEverySize(yuv::convertGrey, 1, [](const std::uint8_t* in, int width, int x, int y) {
      return yuv::greyPixel(in[y * width + x]);
    });
  });
}

TEST(YuvConversion, FillsTheLargestFrame) {
  constexpr int kWidth = 1280, kHeight = 960;
  GuardedBytes in(kWidth * kHeight * 2);
  GuardedBytes out(kWidth * kHeight * 4);
  fillWithNoise(in);
  yuv::convert422(in.data(), kWidth, kHeight, out.data());
  for (std::size_t i = 0; i < kWidth * kHeight; ++i) {
    const std::uint8_t* pair = in.data() + i / 2 * 4;
    ASSERT_EQ(out.pixel(i), yuv::pixel(pair[i % 2 * 2], pair[1], pair[3])) << i;
  }
}

// Before the smallest colour frame is enlarged, its chrominance is interpolated between the pairs.
TEST(YuvConversion, InterpolatesTheChrominanceOfTheSmallestFrame) {
  onEveryInstructionSet([] {
    GuardedBytes in(160 * 120 * 2);
    GuardedBytes out(160 * 120 * 4);
    fillWithNoise(in);
    out.fill(0x5A);
    yuv::convertSmall422(in.data(), out.data());
    for (std::size_t row = 0; row < 120; ++row) {
      const std::size_t first = row * 160;
      ASSERT_EQ(out.pixel(first), kUntouched);
      ASSERT_EQ(out.pixel(first + 159), kUntouched);
      for (std::size_t k = 0; k < 79; ++k) {
        const std::uint8_t* a = in.data() + row * 320 + k * 4;
        const std::uint8_t* b = a + 4;
        ASSERT_EQ(out.pixel(first + 2 * k + 1),
                  yuv::pixel(a[2], (a[1] + b[1]) >> 1, (3 * a[3] + b[3]) >> 2))
            << row << ", " << k;
        ASSERT_EQ(out.pixel(first + 2 * k + 2), yuv::pixel(b[0], b[1], (a[3] + 3 * b[3]) >> 2))
            << row << ", " << k;
      }
    }
  });
}

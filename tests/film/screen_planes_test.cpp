// SPDX-License-Identifier: Apache-2.0
// The colours that people see, from a screen's pixels through a film and a player back to pixels.
#include "film/screen_planes.h"

extern "C" {
#include <libavutil/frame.h>
}

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "../robot/test_folder.h"
#include "film/film_file.h"
#include "read_film.h"

namespace {

constexpr int kPatch = 32;
constexpr int kAcross = 8;

const std::vector<std::uint32_t> kColors = {
    0x000000, 0xffffff, 0xff0000, 0x00ff00, 0x0000ff, 0x00ffff, 0xff00ff, 0xffff00,
    0x808080, 0x202020, 0xe0e0e0, 0xc08060, 0x4060a0, 0x308030, 0x6a5acd, 0xffb080};

// One picture of a patch each, filmed, and shown by a player.
class Patches {
 public:
  Patches() {
    const int rows = static_cast<int>(kColors.size()) / kAcross;
    const film::EncoderSettings settings{.width = kAcross * kPatch,
                                         .height = rows * kPatch,
                                         .look = film::Look::Screen,
                                         .preset = "superfast",
                                         .quality = 20};
    // More than a row needs, as pictures have it; the byte that is ignored is.
    const int stride = settings.width + 16;
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < settings.height; ++y)
      for (int x = 0; x < stride; ++x)
        pixels.push_back(colorAt(std::min(x, settings.width - 1), y) | 0xab000000u);
    film::FilmEncoder encoder(settings);
    const film::VideoFrame frame = encoder.newFrame();
    film::writePlanes(pixels.data(), stride, *frame);
    const std::string path = fFolder / "a.mkv";
    film::FilmFile file(path, 30);
    file.write(encoder.encode(*frame), settings.width, settings.height, 0);
    file.finish();
    fShown = pixelsOfFilm(path);
    EXPECT_EQ(fShown.size(), std::size_t{3} * settings.width * settings.height);
  }

  // Mean difference of the colour's parts inside of a patch, away from its neighbours.
  double errorOf(std::size_t patch) const {
    constexpr int kEdge = 4;
    const int left = static_cast<int>(patch) % kAcross * kPatch;
    const int top = static_cast<int>(patch) / kAcross * kPatch;
    double sum = 0;
    int count = 0;
    for (int y = top + kEdge; y < top + kPatch - kEdge; ++y)
      for (int x = left + kEdge; x < left + kPatch - kEdge; ++x)
        for (int part = 0; part < 3; ++part, ++count) {
          const std::size_t at = 3 * (std::size_t{kAcross} * kPatch * y + x) + part;
          const int wanted = static_cast<int>(kColors[patch] >> (16 - 8 * part) & 255);
          sum += std::abs(static_cast<unsigned char>(fShown[at]) - wanted);
        }
    return sum / count;
  }

 private:
  static std::uint32_t colorAt(int x, int y) { return kColors[y / kPatch * kAcross + x / kPatch]; }

  TestFolder fFolder;
  std::string fShown;
};

TEST(ScreenPlanes, ShowTheSameColorsInAPlayer) {
  const Patches patches;
  for (std::size_t i = 0; i < kColors.size(); ++i)
    EXPECT_LT(patches.errorOf(i), 3) << std::hex << kColors[i];
}

TEST(ScreenPlanes, ReachFromBlackToWhite) {
  const film::VideoFrame frame = film::newFrame(2, 2, AV_PIX_FMT_YUV420P);
  const std::vector<std::uint32_t> pixels = {0x000000, 0xffffff, 0xff0000, 0x0000ff};
  film::writePlanes(pixels.data(), 2, *frame);
  EXPECT_EQ(frame->data[0][0], 16);
  EXPECT_EQ(frame->data[0][1], 235);
  EXPECT_EQ(frame->data[0][frame->linesize[0]], 63);
  EXPECT_EQ(frame->data[0][frame->linesize[0] + 1], 32);
}

TEST(ScreenPlanes, HaveTheMeanColorOfFourPixels) {
  const auto colorOf = [](const std::vector<std::uint32_t>& pixels) {
    const film::VideoFrame frame = film::newFrame(2, 2, AV_PIX_FMT_YUV420P);
    film::writePlanes(pixels.data(), 2, *frame);
    return std::pair<int, int>(frame->data[1][0], frame->data[2][0]);
  };
  EXPECT_EQ(colorOf({0x000000, 0xffffff, 0xffffff, 0x000000}), std::pair(128, 128));
  EXPECT_EQ(colorOf({0xff0000, 0xff0000, 0xff0000, 0xff0000}), std::pair(102, 240));
  const std::pair oneInFour(122, 156);
  EXPECT_EQ(colorOf({0xff0000, 0, 0, 0}), oneInFour);
  EXPECT_EQ(colorOf({0, 0xff0000, 0, 0}), oneInFour);
  EXPECT_EQ(colorOf({0, 0, 0xff0000, 0}), oneInFour);
  EXPECT_EQ(colorOf({0, 0, 0, 0xff0000}), oneInFour);
}

}  // namespace

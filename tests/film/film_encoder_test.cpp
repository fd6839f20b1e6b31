// SPDX-License-Identifier: Apache-2.0
#include "film/film_encoder.h"

extern "C" {
#include <libavutil/frame.h>
}

#include <gtest/gtest.h>

#include <cstring>

#include "../robot/test_folder.h"
#include "film/film_file.h"
#include "read_film.h"

namespace {

using film::EncoderSettings;
using film::FilmEncoder;
using film::Look;

constexpr int kWidth = 64;
constexpr int kHeight = 48;

// Of one brightness.
film::EncodedPicture encodeGrey(FilmEncoder& encoder, int brightness) {
  const film::VideoFrame frame = encoder.newFrame();
  for (int plane = 0; plane < 3; ++plane) {
    const int rows = plane == 0 || frame->format == AV_PIX_FMT_YUV422P ? kHeight : kHeight / 2;
    std::memset(frame->data[plane], plane == 0 ? brightness : 128,
                static_cast<std::size_t>(frame->linesize[plane]) * rows);
  }
  return encoder.encode(*frame);
}

EncoderSettings settingsOf(Look look, const std::string& preset = "veryfast") {
  return {.width = kWidth, .height = kHeight, .fps = 25, .look = look, .preset = preset};
}

std::string factsOf(const std::string& file, const std::string& facts) {
  Process ffprobe("ffprobe",
                  {"-v", "error", "-of", "csv=p=0", "-show_entries", "stream=" + facts, file});
  ffprobe.waitForExit();
  return ffprobe.output() + ffprobe.errors();
}

class FilmEncoderTest : public testing::Test {
 protected:
  TestFolder folder;
  const std::string path = folder / "a.mkv";
};

TEST_F(FilmEncoderTest, BeginsWithAKeyFrameAndHasOneEveryFiveSeconds) {
  FilmEncoder encoder(settingsOf(Look::Camera));
  for (int i = 0; i < 130; ++i) EXPECT_EQ(encodeGrey(encoder, 100).isKey, i == 0 || i == 125) << i;
}

TEST_F(FilmEncoderTest, TellsPlayersTheColorsOfAScreen) {
  film::FilmFile file(path, 25);
  FilmEncoder encoder(settingsOf(Look::Screen));
  file.write(encodeGrey(encoder, 100), kWidth, kHeight, 0);
  file.finish();
  EXPECT_EQ(factsOf(path, "pix_fmt,color_range,color_space,color_transfer,color_primaries"),
            "yuv420p,tv,bt709,iec61966-2-1,bt709\n");
}

TEST_F(FilmEncoderTest, TellsPlayersTheColorsOfACamera) {
  film::FilmFile file(path, 25);
  FilmEncoder encoder(settingsOf(Look::Camera));
  file.write(encodeGrey(encoder, 100), kWidth, kHeight, 0);
  file.finish();
  EXPECT_EQ(factsOf(path, "pix_fmt,color_range,color_space"), "yuv422p,tv,smpte170m\n");
}

TEST_F(FilmEncoderTest, MayBeFollowedByAnotherInOneFilm) {
  film::FilmFile file(path, 25);
  int time = 0;
  for (const char* preset : {"superfast", "ultrafast"}) {
    FilmEncoder encoder(settingsOf(Look::Screen, preset));
    for (int i = 0; i < 10; ++i, time += 40)
      file.write(encodeGrey(encoder, 20 + time / 4), kWidth, kHeight, time);
  }
  file.finish();
  const FilmRead film = readFilm(path);
  EXPECT_EQ(film.errors, "");
  ASSERT_EQ(film.times.size(), 20u);
  const std::string pixels = pixelsOfFilm(path);
  ASSERT_EQ(pixels.size(), 20u * kWidth * kHeight * 3);
  for (int i = 0; i < 20; ++i)
    EXPECT_NEAR(static_cast<unsigned char>(pixels[i * kWidth * kHeight * 3]),
                (20 + i * 10 - 16) * 255 / 219, 3)
        << i;
}

TEST_F(FilmEncoderTest, SaysWhatItCannotDo) {
  try {
    FilmEncoder encoder(settingsOf(Look::Screen, "no such preset"));
    FAIL();
  } catch (const Ky::KyError& error) {
    EXPECT_TRUE(std::string(error.what()).starts_with("the film's encoder can't be started: "))
        << error.what();
  }
}

}  // namespace

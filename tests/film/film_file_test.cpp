// SPDX-License-Identifier: Apache-2.0
#include "film/film_file.h"

extern "C" {
#include <libavutil/frame.h>
}

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "../robot/test_folder.h"
#include "read_film.h"

namespace {

using film::FilmFile;

constexpr int kSide = 64;

class FilmFileTest : public testing::Test {
 protected:
  // A picture of noise, which takes some bytes.
  film::EncodedPicture next() {
    const film::VideoFrame frame = encoder.newFrame();
    for (int plane = 0; plane < 3; ++plane)
      for (int i = 0; i < frame->linesize[plane] * kSide; ++i)
        frame->data[plane][i] = static_cast<std::uint8_t>((seed = seed * 69069 + 1) >> 24);
    return encoder.encode(*frame);
  }
  void write(FilmFile& file, int pictures) {
    for (int i = 0; i < pictures; ++i) file.write(next(), kSide, kSide, time += 40);
  }
  // Of a film that can't be written.
  static std::string errorOf(const std::string& path, const film::WriteError& error, int number) {
    EXPECT_EQ(error.number(), number);
    const std::string begin = "can't write '" + path + "': ";
    const std::string text = error.what();
    EXPECT_TRUE(text.starts_with(begin)) << text;
    return text.substr(begin.size());
  }

  TestFolder folder;
  film::FilmEncoder encoder{{.width = kSide, .height = kSide}};
  std::uint32_t seed = 1;
  std::int64_t time = -40;
};

TEST_F(FilmFileTest, KnowsHowLargeItIs) {
  const std::string path = folder / "a.mkv";
  FilmFile file(path, 25);
  EXPECT_EQ(file.bytes(), 0);
  write(file, 60);
  const std::int64_t before = file.bytes();
  EXPECT_GT(before, 60 * 1000);
  write(file, 60);
  EXPECT_GT(file.bytes(), before + 60 * 1000);
  file.finish();
  EXPECT_EQ(file.bytes(), static_cast<std::int64_t>(std::filesystem::file_size(path)));
  EXPECT_EQ(readFilm(path).times.size(), 120u);
}

TEST_F(FilmFileTest, IsNotThereBeforeItsFirstPicture) {
  const std::string path = folder / "a.mkv";
  { FilmFile file(path, 25); }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(FilmFileTest, IsFinishedByItsEnd) {
  const std::string path = folder / "a.mkv";
  {
    FilmFile file(path, 25);
    write(file, 3);
  }
  const FilmRead film = readFilm(path);
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(film.times.size(), 3u);
}

TEST_F(FilmFileTest, CanBePlayedBeforeItsEndButForTheLastSecond) {
  const std::string path = folder / "a.mkv";
  FilmFile file(path, 25);
  const film::VideoFrame frame = encoder.newFrame();
  for (int plane = 0; plane < 3; ++plane)
    std::memset(frame->data[plane], 128, static_cast<std::size_t>(frame->linesize[plane]) * kSide);
  for (int i = 0; i < 100; ++i) file.write(encoder.encode(*frame), kSide, kSide, time += 40);
  EXPECT_GE(readFilm(path).times.size(), 74u);
}

TEST_F(FilmFileTest, SaysThatTheDiskIsFull) {
  FilmFile file("/dev/full", 25);
  try {
    write(file, 200);
    file.finish();
    FAIL();
  } catch (const film::WriteError& error) {
    EXPECT_EQ(errorOf("/dev/full", error, ENOSPC), "No space left on device");
  }
}

TEST_F(FilmFileTest, SaysThatThereIsNoFolder) {
  const std::string path = folder / "no/a.mkv";
  FilmFile file(path, 25);
  try {
    write(file, 1);
    FAIL();
  } catch (const film::WriteError& error) {
    EXPECT_EQ(errorOf(path, error, ENOENT), "No such file or directory");
  }
}

}  // namespace

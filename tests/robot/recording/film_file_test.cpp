// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/film_file.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "film_facts.h"
#include "robot/in_process_robot.h"
#include "robot/test_folder.h"
#include "support/own_network.h"

namespace fs = std::filesystem;

namespace {

const cv::Size kSize{320, 240};

// The worst there is for whoever compresses it.
cv::Mat noise(cv::Size size = kSize) {
  cv::Mat picture(size, CV_8UC3);
  cv::randu(picture, 0, 256);
  return picture;
}

class FilmFile : public testing::Test {
 protected:
  std::unique_ptr<robot::FilmFile> make(cv::Size size = kSize, int fps = 15) const {
    return std::make_unique<robot::FilmFile>(home.create("/home/tam/", "clip", ".avi"), size, fps);
  }
  // False where we may not.
  bool mountHere(const char* kind, const char* options) const {
    return mount("none", folder.path().c_str(), kind, 0, options) == 0;
  }
  // Writes for as long as it can; the text of the error.
  static std::string fill(robot::FilmFile& film, int most) {
    return errorText([&] {
      while (film.frames() < most) film.write(noise());
    });
  }
  std::int64_t bytesOnDisk() const {
    struct stat file {};
    stat(path.c_str(), &file);
    return file.st_blocks * 512;
  }

  TestFolder folder;
  std::string path = folder / "clip.avi";
  robot::HomeFolder home{folder.path()};
};

TEST_F(FilmFile, IsOneThatPlayersOpen) {
  const struct {
    cv::Size size;
    int fps, frames;
  } films[] = {{{160, 120}, 1, 3}, {{320, 240}, 15, 40}, {{640, 480}, 30, 7}, {{1280, 960}, 15, 5}};
  for (const auto& [size, fps, frames] : films) {
    const auto film = make(size, fps);
    for (int i = 0; i < frames; ++i) film->write(noise(size));
    film->finish();
    EXPECT_EQ(film->frames(), frames);
    expectFilm(path, size.width, size.height, fps, frames);
    fs::remove(path);
  }
}

TEST_F(FilmFile, ShowsWhatWasWritten) {
  const auto film = make();
  for (int i = 0; i < 5; ++i) film->write(cv::Mat(kSize, CV_8UC3, cv::Scalar::all(40 * i + 30)));
  film->finish();
  cv::VideoCapture player(path, cv::CAP_FFMPEG);
  cv::Mat picture;
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(player.read(picture));
    EXPECT_NEAR(cv::mean(picture)[1], 40 * i + 30, 3);
  }
}

TEST_F(FilmFile, IsFinishedWhenItGoes) {
  make()->write(noise());
  expectFilm(path, 320, 240, 15, 1);
}

TEST_F(FilmFile, GivesBackTheRoomThatItDidNotNeed) {
  auto film = make();
  film->write(noise());
  EXPECT_GT(bytesOnDisk(), 500000);
  film.reset();
  EXPECT_LT(bytesOnDisk(), static_cast<std::int64_t>(fs::file_size(path)) + 65536);
}

TEST_F(FilmFile, EndsCompleteWhenTheDiskIsFull) {
  NEED_OWN_NETWORK();
  if (!mountHere("tmpfs", "size=3m")) GTEST_SKIP() << "no mounts of our own";
  auto film = make();
  EXPECT_EQ(fill(*film, 1000), "the robot's disk is full; free some room");
  const int frames = film->frames();
  EXPECT_GT(frames, 10);
  film.reset();
  expectFilm(path, 320, 240, 15, frames);
  umount(folder.path().c_str());
}

TEST_F(FilmFile, IsNotBegunOnAFullDisk) {
  NEED_OWN_NETWORK();
  if (!mountHere("tmpfs", "size=100k")) GTEST_SKIP() << "no mounts of our own";
  EXPECT_EQ(errorText([&] { make(); }),
            "\"/home/tam/clip.avi\" can't be recorded: the robot's disk is full; free some room");
  EXPECT_TRUE(fs::is_empty(folder.path()));
  umount(folder.path().c_str());
}

TEST_F(FilmFile, IsWrittenWhereNoRoomCanBeSetAside) {
  NEED_OWN_NETWORK();
  if (!mountHere("ramfs", nullptr)) GTEST_SKIP() << "no mounts of our own";
  const auto film = make();
  EXPECT_EQ(fill(*film, 20), "no error");
  film->finish();
  expectFilm(path, 320, 240, 15, 20);
  umount(folder.path().c_str());
}

// As by "ulimit -f", until it goes out of scope.
struct FileSizeLimit {
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit{bytes, before.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before); }
  rlimit before{};
};

TEST_F(FilmFile, EndsCompleteWhereFilesMayNotGrow) {
  const FileSizeLimit limit(2000000);
  auto film = make();
  EXPECT_EQ(fill(*film, 1000), "the robot's disk is full; free some room");
  const int frames = film->frames();
  EXPECT_GT(frames, 10);
  film.reset();
  expectFilm(path, 320, 240, 15, frames);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <fstream>
#include <opencv2/imgcodecs.hpp>

#include "ky/error.h"
#include "robot/camera/generated_scene.h"
#include "robot/camera/open_source.h"
#include "robot/camera/picture_source.h"
#include "support/log_capture.h"
#include "test_film.h"
#include "test_folder.h"
#include "zu/os.h"

namespace robot {
namespace {

std::string errorOf(const std::string& source) {
  try {
    openSource(source, 0);
  } catch (const Ky::KyError& error) {
    return error.what();
  }
  return "no error";
}

void writePicture(const std::string& path, int level) {
  cv::imwrite(path, cv::Mat(30, 40, CV_8UC3, cv::Scalar::all(level)));
}

int levelOf(const SourcePicture& taken) {
  return cvRound(cv::mean(taken.picture)[0]);
}

// A clock that stands until it is moved.
class HandClock {
 public:
  void forward(std::int64_t microseconds) { fNow += microseconds; }

 private:
  std::int64_t fNow = 1700000000000000;
  zu::os::ClockOverride fOverride{[this] {
    return zu::os::TimeValue{fNow / 1000000, fNow % 1000000};
  }};
};

TEST(Source, OfReadersIsAskedTwiceAsOftenAsTheFastestWantsButAtMostSixtyTimesASecond) {
  EXPECT_EQ(periodForReaders(5).count(), 100000);
  EXPECT_EQ(periodForReaders(30).count(), 16666);
  EXPECT_EQ(periodForReaders(60).count(), 16666);
  EXPECT_EQ(openSource("generated", 0)->period(10).count(), 50000);
}

TEST(Source, GeneratedShowsTheTimeOfItsPicture) {
  HandClock clock;
  const auto source = openSource("generated", 1);
  const auto first = source->next();
  EXPECT_EQ(first.time, 1700000000000000);
  clock.forward(40000);
  EXPECT_EQ(source->next().time, 1700000000040000);
}

TEST(Source, GeneratedStandsStillAtTheMomentThatItIsGivenWhileItsTimesGoOn) {
  HandClock clock;
  const auto source = openSource("generated:1234567890.25", 0);
  const auto first = source->next();
  clock.forward(5000000);
  const auto second = source->next();
  EXPECT_EQ(cv::norm(first.picture, GeneratedScene(0).render(1234567890250000), cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(first.picture, second.picture, cv::NORM_INF), 0);
  EXPECT_EQ(second.time - first.time, 5000000);
  EXPECT_EQ(source->name(), "generated:1234567890.25");
}

TEST(Source, SaysThatAGeneratedSceneIsGivenNoMoment) {
  for (const std::string moment : {"", "noon", "12 s", "-1", "1e9", "nan", "inf", "999999999999"})
    EXPECT_EQ(errorOf("generated:" + moment),
              "\"generated:" + moment +
                  "\" names no moment; write it in seconds since 1970, such as "
                  "generated:1700000000.5");
}

TEST(Source, SaysThatAFileIsMissingAndWhatASourceMayBe) {
  EXPECT_EQ(errorOf("/nowhere/film.avi"),
            "there is no file or folder \"/nowhere/film.avi\"; a source is \"generated\", a film, "
            "a picture, a folder of pictures or /dev/videoN");
}

TEST(Source, SaysThatADeviceIsMissing) {
  EXPECT_EQ(errorOf("/dev/video99"), "\"/dev/video99\" can't be opened: No such file or directory");
}

TEST(Source, SaysThatAFileIsNoFilm) {
  const TestFolder folder;
  std::ofstream(folder / "film.avi") << "this is no film";
  EXPECT_EQ(errorOf(folder / "film.avi"),
            "\"" + (folder / "film.avi") +
                "\" is no film that can be read; is it complete, and may it be read?");
}

TEST(Source, SaysThatAFolderHoldsNoPicture) {
  const TestFolder folder;
  std::ofstream(folder / "notes.txt") << "no picture";
  EXPECT_EQ(errorOf(folder.path()),
            "there is no readable picture in \"" + folder.path().string() + "\"");
}

TEST(FilmSource, PlaysAtTheFilmsOwnRateWhateverReadersWant) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 3, 8);
  const auto source = openSource(folder / "film.avi", 0);
  EXPECT_EQ(source->period(1).count(), 125000);
  EXPECT_EQ(source->period(30).count(), 125000);
}

TEST(FilmSource, BeginsAgainAtItsEnd) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 4, 25);
  const auto source = openSource(folder / "film.avi", 0);
  std::vector<int> levels;
  for (int i = 0; i < 9; ++i) levels.push_back((levelOf(source->next()) + 5) / 20);
  EXPECT_EQ(levels, (std::vector{0, 1, 2, 3, 0, 1, 2, 3, 0}));
}

TEST(FilmSource, HandsOutPicturesThatStayAsTheyAre) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 4, 25);
  const auto source = openSource(folder / "film.avi", 0);
  const auto first = source->next();
  const int before = levelOf(first);
  source->next();
  source->next();
  EXPECT_EQ(levelOf(first), before);
}

TEST(FilmSource, SaysThatTheFilmIsGone) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 1, 25);
  const auto source = openSource(folder / "film.avi", 0);
  source->next();
  std::filesystem::remove(folder / "film.avi");
  EXPECT_THROW(source->next(), Ky::KyError);
}

TEST(PictureSource, ShowsTheFoldersPicturesInTheOrderOfTheirNamesForASecondEach) {
  const TestFolder folder;
  writePicture(folder / "b.png", 20);
  writePicture(folder / "a.png", 10);
  writePicture(folder / "c.bmp", 30);
  HandClock clock;
  const auto source = openSource(folder.path(), 0);
  std::vector<int> levels;
  for (int half = 0; half < 8; ++half) {
    levels.push_back(levelOf(source->next()));
    clock.forward(PictureSource::kStay / 2);
  }
  EXPECT_EQ(levels, (std::vector{10, 10, 20, 20, 30, 30, 10, 10}));
}

TEST(PictureSource, SkipsABrokenPictureWithAWarning) {
  const TestFolder folder;
  writePicture(folder / "a.png", 10);
  std::ofstream(folder / "b.png") << "broken";
  writePicture(folder / "c.png", 30);
  HandClock clock;
  const LogCapture log;
  const auto source = openSource(folder.path(), 0);
  std::vector<int> levels;
  for (int i = 0; i < 5; ++i) {
    levels.push_back(levelOf(source->next()));
    clock.forward(PictureSource::kStay);
  }
  EXPECT_EQ(levels, (std::vector{10, 30, 10, 30, 10}));
  EXPECT_EQ(log.lines("kyrobot"), std::vector{"warning camera: \"" + (folder / "b.png") +
                                              "\" is no picture that can be read; skipped"});
}

TEST(PictureSource, KeepsShowingASinglePictureWithNewTimes) {
  const TestFolder folder;
  writePicture(folder / "only.png", 10);
  HandClock clock;
  const auto source = openSource(folder / "only.png", 0);
  const auto first = source->next();
  clock.forward(3 * PictureSource::kStay);
  const auto second = source->next();
  EXPECT_EQ(levelOf(second), 10);
  EXPECT_EQ(second.time - first.time, 3 * PictureSource::kStay);
}

}  // namespace
}  // namespace robot

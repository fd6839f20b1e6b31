// SPDX-License-Identifier: Apache-2.0
// ky watch, as people run it; its films are read by other programs.
#include <csignal>
#include <filesystem>
#include <opencv2/videoio.hpp>
#include <optional>

#include "../film/read_film.h"
#include "../robot/kyrobot_process.h"
#include "../robot/test_folder.h"
#include "robot/streaming/picture_encoder.h"
#include "scripted_camera.h"
#include "support/process.h"

namespace {

using Ky::KyValue;

constexpr std::int64_t kStart = 1700000000123456;
constexpr std::int64_t kPeriod = 40000;

// Of the pictures that the film shows.
std::vector<cv::Mat> picturesOf(const std::string& file) {
  cv::VideoCapture film(file, cv::CAP_FFMPEG);
  std::vector<cv::Mat> pictures;
  for (cv::Mat picture; film.read(picture);) pictures.push_back(picture.clone());
  return pictures;
}

// Whether the film shows these views, in this order, and nothing is broken in it.
void expectFilm(const std::string& file, const std::vector<int>& views) {
  const FilmRead film = readFilm(file);
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(film.width, kWidth);
  EXPECT_EQ(film.height, kHeight);
  EXPECT_EQ(film.times.size(), views.size());
  const std::vector<cv::Mat> pictures = picturesOf(file);
  ASSERT_EQ(pictures.size(), views.size());
  for (std::size_t i = 0; i < views.size(); ++i)
    EXPECT_GT(cv::PSNR(pictures[i], view(views[i])), 28) << "picture " << i;
}

// Views as a robot encodes them: its chain's numbers grow.
class Encoder {
 public:
  KyValue item(int number, std::int64_t time, bool wantsKey = false) {
    const robot::EncodedPicture packet =
        fEncoder.encode(robot::pixelsOf(view(number), 9), wantsKey);
    return KyValue::array({"h264", record(packet.bytes, time), ++fNumber, packet.isKey, 1400000});
  }

 private:
  robot::PictureEncoder fEncoder{{{1, 9}, 25, 20000000}};
  std::int64_t fNumber = 0;
};

KyValue exact(int number, std::int64_t time) {
  return KyValue::array({"exact", recordOf(number, time)});
}

std::int64_t timeOf(int number) {
  return kStart + number * kPeriod;
}

class WatchCommand : public testing::Test {
 protected:
  void start(std::vector<std::string> options = {}, const std::string& address = {}) {
    options.insert(options.begin(),
                   {"watch", file, "--robot", address.empty() ? robot.address() : address});
    command.emplace(KY, options);
  }
  // With an open stream.
  void startStream(const std::vector<std::string>& options = {}) {
    start(options);
    ASSERT_TRUE(waitUntil([&] { return robot.camera->opened() == 1; }));
  }
  // All that was sent has arrived, and is taken before the end is seen.
  void endWithRobot() {
    ASSERT_TRUE(waitUntil([&] { return robot.camera->isIdle(); }));
    robot.stop();
    EXPECT_EQ(command->waitForExit(), 1);
    EXPECT_TRUE(command->errors().starts_with("ky: no more pictures come: ")) << command->errors();
  }
  bool isThere() const { return std::filesystem::exists(file); }

  TestFolder folder;
  const std::string file = folder / "a film.mkv";
  CameraRobot robot{ScriptedCamera::Offers::Streams};
  std::optional<Process> command;
};

TEST_F(WatchCommand, FilmsExactPicturesAtTheTimesWhenTheyWereTaken) {
  startStream({"--resolution", "1", "--fps", "25"});
  EXPECT_TRUE(robot.camera->wasCalled("subscribe \"\" 1 9 25"));
  const std::vector<std::int64_t> times = {0, 40, 80, 500, 540, 1200};
  std::vector<int> views;
  for (const std::int64_t time : times) {
    views.push_back(static_cast<int>(views.size()));
    robot.camera->send(exact(views.back(), kStart + time * 1000));
  }
  endWithRobot();
  expectFilm(file, views);
  const FilmRead film = readFilm(file);
  ASSERT_EQ(film.times.size(), times.size());
  for (std::size_t i = 0; i < times.size(); ++i)
    EXPECT_NEAR(film.times[i], static_cast<double>(times[i]) / 1000, 0.0011) << i;
}

TEST_F(WatchCommand, GoesOnWhenTheRobotsClockIsSet) {
  startStream({"--fps", "25"});
  std::vector<int> views;
  for (const std::int64_t time : {kStart, kStart + kPeriod, std::int64_t{0}, kPeriod, 2 * kPeriod,
                                  kStart + 100000 * kPeriod}) {
    views.push_back(static_cast<int>(views.size()));
    robot.camera->send(exact(views.back(), time));
  }
  endWithRobot();
  const FilmRead film = readFilm(file);
  ASSERT_EQ(film.times.size(), 6u);
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_NEAR(film.times[i], 0.04 * static_cast<double>(i), 0.0011);
}

TEST_F(WatchCommand, PutsEncodedPicturesIntoTheFilmFromTheFirstKeyFrameOn) {
  startStream({"--pictures", "saving"});
  EXPECT_TRUE(robot.camera->wasCalled("openPictures \"ky_1\""));
  Encoder encoder;
  encoder.item(0, timeOf(0));  // lost
  std::vector<int> views;
  std::size_t bytes = 0;
  for (int i = 1; i < 20; ++i) {
    const KyValue item = encoder.item(i, timeOf(i), i == 4);
    robot.camera->send(item);
    if (i < 4) continue;
    views.push_back(i);
    bytes += item[1][6].asBinary().size();
  }
  endWithRobot();
  expectFilm(file, views);
  const FilmRead film = readFilm(file);
  ASSERT_EQ(film.times.size(), views.size());
  EXPECT_NEAR(film.times.back(), 0.04 * 15, 0.0011);
  const auto size = std::filesystem::file_size(file);
  EXPECT_GT(size, bytes - bytes / 100) << "they are not encoded once more";
  EXPECT_LT(size, bytes + 3000);
}

TEST_F(WatchCommand, AsksForTheEncodingThatIsWanted) {
  startStream({"--pictures", "saving"});
  EXPECT_TRUE(robot.camera->wasCalled("openPictures"));
  EXPECT_EQ(robot.camera->encoding(), "saving");
}

TEST_F(WatchCommand, AsksTheRobotAnewWhereEncodedPicturesAreMissing) {
  startStream();
  EXPECT_EQ(robot.camera->encoding(), "automatic");
  Encoder encoder;
  for (int i = 0; i < 3; ++i) robot.camera->send(encoder.item(i, timeOf(i)));
  const KyValue twice = encoder.item(3, timeOf(3));
  robot.camera->send(twice);
  robot.camera->send(twice);
  encoder.item(4, timeOf(4));  // lost
  robot.camera->send(encoder.item(5, timeOf(5)));
  ASSERT_TRUE(waitUntil([&] { return robot.camera->opened() == 2; }));
  for (int i = 6; i < 9; ++i) robot.camera->send(encoder.item(i, timeOf(i), i == 6));
  endWithRobot();
  expectFilm(file, {0, 1, 2, 3, 6, 7, 8});
}

TEST_F(WatchCommand, TakesExactAndEncodedPicturesInOneFilm) {
  startStream();
  Encoder encoder;
  for (int i = 0; i < 3; ++i) robot.camera->send(exact(i, timeOf(i)));
  for (int i = 3; i < 6; ++i) robot.camera->send(encoder.item(i, timeOf(i)));
  robot.camera->send(exact(6, timeOf(6)));  // the robot tries the link
  for (int i = 7; i < 9; ++i) robot.camera->send(encoder.item(i, timeOf(i)));
  for (int i = 9; i < 12; ++i) robot.camera->send(exact(i, timeOf(i)));
  robot.camera->send(encoder.item(12, timeOf(12), true));
  endWithRobot();
  expectFilm(file, {0, 1, 2, 3, 4, 5, 7, 8, 9, 10, 11, 12});
}

TEST_F(WatchCommand, EndsAFilmThatCanBePlayedWithCtrlC) {
  startStream({"--json"});
  for (int i = 0; i < 5; ++i) robot.camera->send(exact(i, timeOf(i)));
  ASSERT_TRUE(waitUntil([&] { return robot.camera->isIdle() && isThere(); }));
  command->signal(SIGINT);
  EXPECT_EQ(command->waitForExit(), 0) << command->errors();
  const FilmRead film = readFilm(file);
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(film.times.size(), 5u);
  EXPECT_EQ(command->output(), "[\"" + file + "\",320,240,5,0.16]\n");
}

TEST_F(WatchCommand, LeavesAFilmThatCanBePlayedWhenItIsKilled) {
  startStream();
  for (int i = 0; i < 60; ++i) robot.camera->send(exact(i, timeOf(i)));
  ASSERT_TRUE(waitUntil([&] { return readFilm(file).times.size() > 20; }));
  command->signal(SIGKILL);
  EXPECT_EQ(command->waitForExit(), -SIGKILL);
  const std::vector<cv::Mat> pictures = picturesOf(file);
  ASSERT_GT(pictures.size(), 20u);
  int newest = -1;  // they come quicker than they are encoded, so that some are left out
  for (const cv::Mat& picture : pictures) {
    do ++newest;
    while (newest < 60 && cv::PSNR(picture, view(newest)) <= 28);
    ASSERT_LT(newest, 60);
  }
}

TEST_F(WatchCommand, EndsWhenItsTimeIsOver) {
  startStream({"--seconds", "0.3"});
  robot.camera->send(exact(0, timeOf(0)));
  EXPECT_EQ(command->waitForExit(), 0) << command->errors();
  EXPECT_EQ(command->output(), file + ": 320 x 240, 1 picture, 0.0 s\n");
  expectFilm(file, {0});
}

TEST_F(WatchCommand, SaysWhyThereIsNoFilm) {
  startStream();
  robot.camera->send(KyValue::array({"error", "the camera is unplugged"}));
  EXPECT_EQ(command->waitForExit(), 1);
  EXPECT_EQ(command->errors(), "ky: there is no picture: the camera is unplugged\n");
  EXPECT_FALSE(isThere());
}

TEST_F(WatchCommand, SaysWhyTheFilmEndsEarly) {
  startStream();
  robot.camera->send(exact(0, timeOf(0)));
  // So long that its arrival is acknowledged.
  const std::string why = "the camera is unplugged" + std::string(10000, '!');
  robot.camera->send(KyValue::array({"error", why}));
  ASSERT_TRUE(waitUntil([&] { return robot.camera->isIdle() && isThere(); }));
  command->signal(SIGINT);
  EXPECT_EQ(command->waitForExit(), 1);
  EXPECT_EQ(command->errors(), "ky: the film ends early: " + why + "\n");
  expectFilm(file, {0});
}

TEST_F(WatchCommand, RefusesWhatIsNoPictureAndKeepsTheFilm) {
  startStream();
  robot.camera->send(exact(0, timeOf(0)));
  robot.camera->send(
      KyValue::array({"exact", record(Ky::KyBinary(std::vector<std::uint8_t>(10)), timeOf(1))}));
  EXPECT_EQ(command->waitForExit(), 1);
  EXPECT_NE(command->errors().find("10 bytes; its size needs 153600"), std::string::npos)
      << command->errors();
  expectFilm(file, {0});
}

TEST_F(WatchCommand, RefusesWhatItCannotDoBeforeItAsksTheRobot) {
  const auto errorOf = [&](const std::string& name) {
    Process wrong(KY, {"watch", folder / name, "--robot", robot.address()});
    wrong.waitForExit();
    return wrong.errors();
  };
  EXPECT_EQ(errorOf("a.avi"), "ky: '" + (folder / "a.avi") +
                                  "' has another ending than .mkv, which says what to write into "
                                  "it\nTry 'ky --help'.\n");
  EXPECT_EQ(errorOf("no/a.mkv"), "ky: can't write '" + (folder / "no/a.mkv") +
                                     "': there is no folder " + (folder / "no") + "\n");
  EXPECT_FALSE(robot.camera->wasCalled(""));
}

TEST_F(WatchCommand, AsksForEachPictureWhereTheRobotSendsNoneByItself) {
  CameraRobot plain(ScriptedCamera::Offers::Nothing);
  std::atomic<int> asked = 0;
  plain.camera->answer = [&](int) {
    const int number = asked++;
    return recordOf(number / 2, timeOf(number / 2));  // each twice: it asks sooner than they come
  };
  start({"--fps", "30"}, plain.address());
  ASSERT_TRUE(waitUntil([&] { return asked == 20; }));
  command->signal(SIGTERM);
  EXPECT_EQ(command->waitForExit(), 0) << command->errors();
  std::vector<int> views;
  for (int i = 0; i < static_cast<int>(readFilm(file).times.size()); ++i) views.push_back(i);
  EXPECT_GE(views.size(), 9u);
  expectFilm(file, views);
}

TEST_F(WatchCommand, FilmsARealRobot) {
  KyrobotProcess real({"--port", "0", "--camera", "0=generated"});
  start({"--seconds", "1", "--resolution", "1"}, real.address().toString());
  EXPECT_EQ(command->waitForExit(), 0) << command->errors();
  const FilmRead film = readFilm(file);
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(film.width, kWidth);
  ASSERT_GE(film.times.size(), 2u);
  EXPECT_LT(film.times.back(), 5);
}

}  // namespace

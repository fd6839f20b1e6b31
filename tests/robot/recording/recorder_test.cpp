// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/recorder.h"

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "film_facts.h"
#include "robot/camera/open_source.h"
#include "robot/camera/scene_clock.h"
#include "robot/in_process_robot.h"
#include "robot/test_film.h"
#include "robot/test_folder.h"
#include "support/log_capture.h"
#include "support/own_network.h"
#include "support/wait.h"
#include "zu/os.h"

namespace fs = std::filesystem;

namespace {

const Ky::KyPeer kDesktop{"1", "PeriscopeBroker"}, kOther{"2", "PeriscopeBroker"};
const std::string kFolder = "/home/tam/recordings/cameras/";

class Recorder : public testing::Test {
 protected:
  bool waitForFrames(int frames) {
    return waitUntil([&] { return recorder->state().film.frames >= frames; });
  }
  std::string start(const std::string& name = "clip", const Ky::KyPeer& caller = kDesktop) {
    return recorder->start(caller, kFolder, name);
  }
  std::string refusal() {
    return errorText([&] { start(); });
  }
  std::string onDisk(const std::string& path) const {
    return folder / path.substr(robot::kHomeName.size());
  }
  void useCameras(std::shared_ptr<robot::Cameras> others) {
    cameras = std::move(others);
    recorder = std::make_unique<robot::Recorder>(cameras, robot::HomeFolder(folder.path()));
  }
  static std::shared_ptr<robot::Cameras> camerasOn(const std::string& source) {
    return std::make_shared<robot::Cameras>(
        std::array<std::unique_ptr<robot::CameraSource>, robot::kCameras>{
            robot::openSource(source, 0), robot::openSource("generated", 1)});
  }

  LogCapture log;
  TestFolder folder;
  std::shared_ptr<robot::Cameras> cameras = InProcessRobot::cameras();
  std::unique_ptr<robot::Recorder> recorder =
      std::make_unique<robot::Recorder>(cameras, robot::HomeFolder(folder.path()));
};

TEST_F(Recorder, RecordsAFilmOfFifteenFramesASecond) {
  EXPECT_EQ(start(), kFolder + "clip.avi");
  EXPECT_TRUE(recorder->state().isRecording);
  ASSERT_TRUE(waitForFrames(5));
  const auto film = recorder->stop();
  EXPECT_GE(film.frames, 5);
  EXPECT_EQ(film.path, kFolder + "clip.avi");
  EXPECT_FALSE(recorder->state().isRecording);
  expectFilm(onDisk(film.path), 320, 240, 15, film.frames);
}

TEST_F(Recorder, RecordsInEverySizeAndRate) {
  for (const robot::FilmSettings settings : {robot::FilmSettings{0, 5}, {2, 10}, {3, 30}}) {
    recorder->setSettings(settings);
    start();
    ASSERT_TRUE(waitForFrames(2));
    const auto film = recorder->stop();
    const cv::Size size = robot::sizeOf(settings.resolution);
    expectFilm(onDisk(film.path), size.width, size.height, settings.fps, film.frames);
  }
}

TEST_F(Recorder, RefusesSizesAndRatesThatFilmsCannotHave) {
  for (const int resolution : {-1, 4})
    EXPECT_EQ(errorText([&] {
                recorder->setSettings({resolution, 15});
              }),
              "there is no resolution " + std::to_string(resolution) +
                  "; 0 is 160x120, 1 320x240, 2 640x480, 3 1280x960");
  for (const int fps : {0, -1, 31})
    EXPECT_EQ(errorText([&] {
                recorder->setSettings({1, fps});
              }),
              "films can't have " + std::to_string(fps) + " frames a second; 1 to 30 they can");
  EXPECT_EQ(recorder->settings().fps, 15);
}

TEST_F(Recorder, RecordsOneFilmAtATime) {
  start();
  EXPECT_EQ(errorText([&] { start("other", kOther); }),
            "\"" + kFolder + "clip.avi\" is being recorded; stop that first");
  EXPECT_TRUE(recorder->state().isRecording) << "the first goes on";
  recorder->stop();
  EXPECT_FALSE(fs::exists(onDisk(kFolder + "other.avi")));
}

TEST_F(Recorder, SaysThatNothingIsBeingRecorded) {
  const std::string text = "nothing is being recorded; start a recording first";
  EXPECT_EQ(errorText([&] { recorder->stop(); }), text);
  start();
  recorder->stop();
  EXPECT_EQ(errorText([&] { recorder->stop(); }), text);
}

TEST_F(Recorder, OverwritesNoFilm) {
  for (const char* name : {"clip.avi", "clip_2.avi", "clip_3.avi"}) {
    EXPECT_EQ(start(), kFolder + name);
    EXPECT_EQ(recorder->stop().path, kFolder + name);
  }
}

TEST_F(Recorder, LeavesNoFileWhenTheCameraHasNoPicture) {
  const TestFolder films;
  writeFilm(films / "film.avi", 3, 30);
  useCameras(camerasOn(films / "film.avi"));
  fs::remove(films / "film.avi");
  auto watcher = cameras->read({});
  ASSERT_TRUE(waitUntil([&] { return !log.lines("kyrobot").empty(); })) << "the film is at its end";
  watcher.reset();
  EXPECT_EQ(refusal().rfind("camera 0 has no picture", 0), 0u) << refusal();
  EXPECT_FALSE(recorder->state().isRecording);
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(Recorder, LeavesNoFileWhereItMayNotHaveOne) {
  EXPECT_NE(errorText([&] { recorder->start(kDesktop, "/elsewhere/", "clip"); }), "no error");
  EXPECT_NE(errorText([&] { recorder->start(kDesktop, kFolder, "a/b"); }), "no error");
  EXPECT_FALSE(recorder->state().isRecording);
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(Recorder, GoesOnWhenWhoeverBeganItLeaves) {
  start();
  recorder->peerLeft(kOther);
  recorder->peerLeft(kDesktop);
  recorder->peerLeft(kDesktop);
  EXPECT_EQ(log.lines("kyrobot").back(), "info recorder: PeriscopeBroker has left; " + kFolder +
                                             "clip.avi goes on until it is stopped");
  const int frames = recorder->state().film.frames;
  ASSERT_TRUE(waitForFrames(frames + 3));
  EXPECT_GE(recorder->stop().frames, frames + 3);
}

TEST_F(Recorder, MakesWayForAnotherFilmWhenNobodyIsLeftToStopIt) {
  start();
  ASSERT_TRUE(waitForFrames(3));
  recorder->peerLeft(kDesktop);
  EXPECT_EQ(start("next", kOther), kFolder + "next.avi");
  recorder->peerLeft(kDesktop);
  EXPECT_NE(errorText([&] { start("third"); }), "no error") << "that one is not abandoned";
  EXPECT_EQ(recorder->stop().path, kFolder + "next.avi");
  const auto first = factsByOpenCv(onDisk(kFolder + "clip.avi"));
  expectFilm(onDisk(kFolder + "clip.avi"), 320, 240, 15, first.frames);
  EXPECT_GE(first.frames, 3);
}

TEST_F(Recorder, BelongsToWhoeverTakesItOver) {
  start();
  recorder->peerLeft(kDesktop);
  EXPECT_FALSE(recorder->takeOver(kOther, kFolder + "clip_2.avi"));
  EXPECT_TRUE(recorder->takeOver(kOther, kFolder + "clip.avi"));
  EXPECT_EQ(refusal(), "\"" + kFolder + "clip.avi\" is being recorded; stop that first");
  recorder->peerLeft(kDesktop);
  EXPECT_NE(refusal(), "no error") << "who had begun it has no more to say";
  recorder->peerLeft(kOther);
  EXPECT_EQ(refusal(), "no error") << "nobody is left to stop it";
  recorder->stop();
  EXPECT_FALSE(recorder->takeOver(kOther, kFolder + "clip.avi"));
}

TEST_F(Recorder, CompletesTheFilmWhenTheRobotStops) {
  start();
  ASSERT_TRUE(waitForFrames(3));
  recorder->end();
  const auto state = recorder->state();
  EXPECT_FALSE(state.isRecording);
  expectFilm(onDisk(state.film.path), 320, 240, 15, state.film.frames);
}

TEST_F(Recorder, CompletesTheFilmWhenItGoes) {
  start();
  ASSERT_TRUE(waitForFrames(3));
  recorder.reset();
  const auto facts = factsByOpenCv(onDisk(kFolder + "clip.avi"));
  EXPECT_GE(facts.frames, 3);
  expectFilm(onDisk(kFolder + "clip.avi"), 320, 240, 15, facts.frames);
}

TEST_F(Recorder, LetsTheCameraRestWhenItHasStopped) {
  start();
  recorder->stop();
  const auto taken = cameras->camera(0).framesTaken();
  EXPECT_EQ(errorText([&] { cameras->camera(0).newest({}); }),
            "camera 0 has no picture yet; try again");
  EXPECT_GT(taken, 0u);
}

TEST_F(Recorder, FollowsTheActiveCamera) {
  start();
  ASSERT_TRUE(waitForFrames(3));
  cameras->setActive(1);
  ASSERT_TRUE(waitForFrames(recorder->state().film.frames + 3));
  cv::VideoCapture player(onDisk(recorder->stop().path), cv::CAP_FFMPEG);
  cv::Mat first, last;
  player.read(first);
  for (cv::Mat next; player.read(next);) last = next.clone();
  EXPECT_GT(cv::mean(first)[1], cv::mean(last)[1] + 30) << "day, then night";
}

TEST_F(Recorder, TellsWhatEndedTheFilm) {
  NEED_OWN_NETWORK();
  if (mount("none", folder.path().c_str(), "tmpfs", 0, "size=4m") != 0)
    GTEST_SKIP() << "no mounts of our own";
  TestFolder films;
  {
    cv::VideoWriter noise(films / "noise.avi", cv::VideoWriter::fourcc('M', 'J', 'P', 'G'), 30,
                          {640, 480});
    cv::Mat picture(480, 640, CV_8UC3);
    for (int i = 0; i < 10; ++i) {
      cv::randu(picture, 0, 256);
      noise.write(picture);
    }
  }
  useCameras(camerasOn(films / "noise.avi"));
  recorder->setSettings({2, 30});
  start();
  ASSERT_TRUE(waitUntil([&] { return !recorder->state().isRecording; }));
  const std::string reason = "the robot's disk is full; free some room";
  EXPECT_EQ(recorder->state().trouble, reason);
  EXPECT_EQ(log.lines("kyrobot").back(),
            "error recorder: " + kFolder + "clip.avi ends here: " + reason);
  const auto film = recorder->stop();
  EXPECT_GT(film.frames, 0);
  expectFilm(onDisk(film.path), 640, 480, 30, film.frames);
  EXPECT_EQ(recorder->state().trouble, "");
  umount(folder.path().c_str());
}

TEST_F(Recorder, CanBeginAnewWhenAFilmHasEndedByItself) {
  start();
  recorder->end();
  EXPECT_EQ(start(), kFolder + "clip_2.avi");
  recorder->stop();
}

// ---- the scene's own clock, read from the film

constexpr int kPlateTop = robot::SceneClock::kY + 50;
const cv::Rect kDigits(robot::SceneClock::kX, kPlateTop, robot::SceneClock::kWidth,
                       robot::SceneClock::kHeight - 50);

cv::Mat digitsOf(const cv::Mat& picture) {
  cv::Mat grey;
  cv::cvtColor(picture(kDigits), grey, cv::COLOR_BGR2GRAY);
  return grey > 170;
}

cv::Mat digitsAt(std::int64_t time) {
  cv::Mat corner(kDigits.br().y, kDigits.br().x, CV_8UC3, cv::Scalar::all(0));
  robot::SceneClock("").draw(corner, time);
  return digitsOf(corner);
}

// Milliseconds; within a second after `since`.
std::int64_t clockIn(const cv::Mat& picture, std::int64_t since) {
  const cv::Mat seen = digitsOf(picture);
  std::pair<double, std::int64_t> best{1e9, 0};
  for (std::int64_t time = since; time < since + 1000; ++time)
    best = std::min(best, {cv::norm(seen, digitsAt(time * 1000), cv::NORM_L1), time});
  return best.second;
}

TEST_F(Recorder, KeepsTheScenesTime) {
  recorder->setSettings({3, 15});
  const std::int64_t begun = zu::os::nowMicroseconds() / 1000 - 100;
  start();
  ASSERT_TRUE(waitForFrames(6));
  cv::VideoCapture player(onDisk(recorder->stop().path), cv::CAP_FFMPEG);
  std::vector<std::int64_t> clocks;
  cv::Mat picture;
  while (clocks.size() < 6 && player.read(picture))
    clocks.push_back(clockIn(picture, clocks.empty() ? begun : clocks.back()));
  // A frame shows a moment between a quarter of its time before and three quarters after it is due,
  // but for a picture that is shown again since the next one came too late.
  const double period = 1000.0 / 15;
  for (std::size_t i = 1; i < clocks.size(); ++i) {
    const double late =
        static_cast<double>(clocks[i] - clocks[0]) - static_cast<double>(i) * period;
    if (clocks[i] == clocks[i - 1]) continue;
    EXPECT_GE(late, -period / 4 - 2) << i;
    EXPECT_LE(late, period * 3 / 4 + 2) << i;
  }
  EXPECT_GT(clocks.back(), clocks.front());
}

}  // namespace

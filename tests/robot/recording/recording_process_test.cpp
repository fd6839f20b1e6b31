// SPDX-License-Identifier: Apache-2.0
// What is left of a film when the robot that records it ends.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "film_facts.h"
#include "ky/photo_capture_proxy.h"
#include "ky/video_recorder_proxy.h"
#include "robot/kyrobot_process.h"
#include "support/wait.h"

namespace {

const std::string kFolder = "/home/tam/recordings/cameras/";

// A robot that has recorded some frames and goes on.
class RecordingRobot : public KyrobotProcess {
 public:
  explicit RecordingRobot(int frames) : fDesktop(connect()) {
    const auto recorder = fDesktop->getProxy("KyVideoRecorder");
    recorder->callVoid("setResolution", 3);
    recorder->callVoid("setFrameRate", 30);
    Ky::KyVideoRecorderProxy(fDesktop).startRecording(kFolder, "clip");
    EXPECT_TRUE(
        waitUntil([&] { return recorder->call<Ky::KyValue>("getState")[1].asInt() >= frames; }));
  }
  ~RecordingRobot() { fDesktop->shutdown(); }
  std::string film() const { return onDisk(kFolder + "clip.avi"); }

 private:
  boost::shared_ptr<Ky::KyBroker> fDesktop;
};

TEST(RecordingRobot, CompletesItsFilmWhenItIsToldToStop) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    RecordingRobot robot(5);
    robot.process().signal(number);
    EXPECT_EQ(robot.process().waitForExit(), 0);
    const auto line = robot.process().waitForErrorLine("clip.avi ends with the robot after ");
    ASSERT_TRUE(line);
    const int frames = std::stoi(line->substr(line->find(" after ") + 7));
    EXPECT_GE(frames, 5);
    expectFilm(robot.film(), 1280, 960, 30, frames);
  }
}

// It loses its index, and at its end the 256 KiB that were not written yet.
TEST(RecordingRobot, LeavesAFilmThatCanBePlayedEvenWhenItIsKilled) {
  RecordingRobot robot(45);
  robot.process().signal(SIGKILL);
  EXPECT_EQ(robot.process().waitForExit(), -SIGKILL);
  const FilmFacts facts = factsByOpenCv(robot.film());
  EXPECT_EQ(facts.width, 1280);
  EXPECT_EQ(facts.fps, 30);
  EXPECT_GT(facts.pictures, 10);
}

TEST(RecordingRobot, OutlivesAFileThatMayNotGrow) {
  const TestFolder home;
  Process robot("sh", {"-c", "ulimit -f 64; exec \"$0\" \"$@\"", KYROBOT, "--port", "0", "--home",
                       home.path().string()});
  const auto line = robot.waitForLine("listening on ");
  ASSERT_TRUE(line);
  Ky::KyBrokerOptions options;
  options.parent = Ky::KyAddress::parse(line->substr(line->rfind(' ') + 1));
  const auto desktop = Ky::KyBroker::create(options);
  for (int i = 0; i < 2; ++i) {
    try {
      Ky::KyPhotoCaptureProxy(desktop).takePicture("/home/tam/", "photo");
      ADD_FAILURE();
    } catch (const Ky::KyError& error) {
      EXPECT_STREQ(error.what(), "\"/home/tam/photo.jpg\" can't be written: File too large");
    }
  }
  EXPECT_FALSE(std::filesystem::exists(home / "photo.jpg"));
  desktop->shutdown();
}

}  // namespace

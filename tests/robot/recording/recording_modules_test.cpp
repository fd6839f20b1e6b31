// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <filesystem>
#include <fstream>
#include <opencv2/imgcodecs.hpp>

#include "film_facts.h"
#include "ky/photo_capture_proxy.h"
#include "ky/video_recorder_proxy.h"
#include "ky/vision_toolbox_proxy.h"
#include "robot/camera/generated_scene.h"
#include "robot/camera/open_source.h"
#include "robot/in_process_robot.h"
#include "robot/recording/photo_capture.h"
#include "robot/recording/video_recorder.h"
#include "robot/recording/vision_toolbox.h"
#include "robot/test_folder.h"
#include "support/log_capture.h"
#include "support/own_network.h"
#include "support/wait.h"

namespace fs = std::filesystem;

namespace {

const std::string kFolder = "/home/tam/recordings/cameras/";
constexpr std::int64_t kMoment = 1'700'000'000;

// A desktop that is connected to a robot whose camera 0 shows one moment.
class RecordingModules : public testing::Test {
 protected:
  RecordingModules() {
    const robot::HomeFolder home(folder.path());
    const auto recorder = std::make_shared<robot::Recorder>(cameras, home);
    const auto& broker = robot.broker();
    Ky::KyModule::createModule<robot::PhotoCapture>(broker, cameras, home);
    Ky::KyModule::createModule<robot::VideoRecorder>(broker, recorder);
    Ky::KyModule::createModule<robot::VisionToolbox>(broker, cameras, home, recorder);
    desktop = robot.connect();
  }
  std::string onDisk(const std::string& path) const {
    return folder / path.substr(robot::kHomeName.size());
  }
  Ky::KyValue stateOf(const boost::shared_ptr<Ky::KyBroker>& program) const {
    return program->getProxy("KyVideoRecorder")->call<Ky::KyValue>("getState");
  }
  // Records until there are `frames` more.
  bool waitForFrames(const boost::shared_ptr<Ky::KyBroker>& program, int frames) const {
    const int now = stateOf(program)[1].asInt();
    return waitUntil([&] { return stateOf(program)[1].asInt() >= now + frames; });
  }
  void set(const char* method, int value) const {
    desktop->getProxy("KyVideoRecorder")->callVoid(method, value);
  }
  int get(const char* method) const {
    return desktop->getProxy("KyVideoRecorder")->call<int>(method);
  }

  LogCapture log;
  TestFolder folder;
  std::shared_ptr<robot::Cameras> cameras = std::make_shared<robot::Cameras>(
      std::array<std::unique_ptr<robot::CameraSource>, robot::kCameras>{
          robot::openSource("generated:" + std::to_string(kMoment), 0),
          robot::openSource("generated", 1)});
  InProcessRobot robot;
  boost::shared_ptr<Ky::KyBroker> desktop;
};

TEST_F(RecordingModules, APhotoShowsTheLivePictureInFullSize) {
  Ky::KyPhotoCaptureProxy photos(desktop);
  const std::string path = photos.takePicture(kFolder, "lookout_photo").asString();
  EXPECT_EQ(path, kFolder + "lookout_photo.jpg");
  const cv::Mat photo = cv::imread(onDisk(path)),
                seen = robot::GeneratedScene(0).render(kMoment * 1'000'000);
  ASSERT_EQ(photo.size(), seen.size());
  EXPECT_GT(cv::PSNR(photo, seen), 35);
  const std::string content = [&] {
    std::ifstream file(onDisk(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  EXPECT_EQ(content.substr(0, 3), "\xFF\xD8\xFF") << "a JPEG";
  EXPECT_EQ(content.substr(content.size() - 2), "\xFF\xD9") << "a whole one";
}

TEST_F(RecordingModules, APhotoShowsWhatTheParametersMakeOfThePicture) {
  cameras->camera(0).setParameter(7, 1);
  const auto path = Ky::KyPhotoCaptureProxy(desktop).takePicture(kFolder, "mirror").asString();
  cv::Mat mirrored = robot::GeneratedScene(0).render(kMoment * 1'000'000);
  cv::flip(mirrored, mirrored, 1);
  EXPECT_GT(cv::PSNR(cv::imread(onDisk(path)), mirrored), 35);
}

TEST_F(RecordingModules, NoPhotoOverwritesAnother) {
  Ky::KyPhotoCaptureProxy photos(desktop);
  for (const char* name : {"photo.jpg", "photo_2.jpg", "photo_3.jpg"})
    EXPECT_EQ(photos.takePicture(kFolder, "photo").asString(), kFolder + name);
  Ky::KyVisionToolboxProxy(desktop).takePicture();
  EXPECT_TRUE(fs::exists(onDisk(kFolder + "photo_4.jpg")));
}

TEST_F(RecordingModules, APhotoIsTakenDuringARecording) {
  Ky::KyVideoRecorderProxy recorder(desktop);
  recorder.startRecording(kFolder, "clip");
  Ky::KyPhotoCaptureProxy(desktop).takePicture(kFolder, "clip");
  ASSERT_TRUE(waitForFrames(desktop, 2));
  const Ky::KyValue film = recorder.stopRecording();
  expectFilm(onDisk(film[1].asString()), 320, 240, 15, film[0].asInt());
}

TEST_F(RecordingModules, NoPartOfAPhotoIsLeftOnAFullDisk) {
  NEED_OWN_NETWORK();
  if (mount("none", folder.path().c_str(), "tmpfs", 0, "size=64k") != 0)
    GTEST_SKIP() << "no mounts of our own";
  EXPECT_EQ(errorText([&] { Ky::KyPhotoCaptureProxy(desktop).takePicture("/home/tam/", "photo"); }),
            "\"/home/tam/photo.jpg\" can't be written: No space left on device");
  EXPECT_TRUE(fs::is_empty(folder.path()));
  umount(folder.path().c_str());
}

TEST_F(RecordingModules, PhotosStayInTheHome) {
  Ky::KyPhotoCaptureProxy photos(desktop);
  EXPECT_EQ(errorText([&] { photos.takePicture("/etc/", "passwd"); }),
            "\"/etc/\" is not in the robot's home; it must begin with \"/home/tam/\"");
  EXPECT_NE(errorText([&] { photos.takePicture(kFolder, "../../x"); }), "no error");
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(RecordingModules, TheRecorderOffersToTellWhatItDoesAndToHandAFilmOver) {
  EXPECT_TRUE(desktop->offers("KyVideoRecorder", "getState"));
  EXPECT_TRUE(desktop->offers("KyVideoRecorder", "takeOver"));
}

TEST_F(RecordingModules, AFilmThatWasTakenOverDoesNotMakeWay) {
  const auto lost = robot.connect();
  Ky::KyVideoRecorderProxy(lost).startRecording(kFolder, "clip");
  lost->shutdown();
  Ky::KyVideoRecorderProxy recorder(desktop);
  EXPECT_FALSE(recorder.takeOver(kFolder + "other.avi"));
  EXPECT_TRUE(recorder.takeOver(kFolder + "clip.avi"));
  const auto third = robot.connect();
  EXPECT_EQ(errorText([&] { Ky::KyVideoRecorderProxy(third).startRecording(kFolder, "other"); }),
            "\"" + kFolder + "clip.avi\" is being recorded; stop that first");
}

TEST_F(RecordingModules, AFilmIsReportedWithItsFramesAndPath) {
  Ky::KyVideoRecorderProxy recorder(desktop);
  EXPECT_EQ(recorder.startRecording(kFolder, "clip"), Ky::KyValue(kFolder + "clip.avi"));
  EXPECT_EQ(recorder.getState()[0], Ky::KyValue(true));
  EXPECT_EQ(recorder.getState()[2], Ky::KyValue(kFolder + "clip.avi"));
  ASSERT_TRUE(waitForFrames(desktop, 3));
  const Ky::KyValue film = recorder.stopRecording();
  ASSERT_EQ(film.size(), 2u);
  EXPECT_GE(film[0].asInt(), 3);
  EXPECT_EQ(film[1].asString(), kFolder + "clip.avi");
  expectFilm(onDisk(film[1].asString()), 320, 240, 15, film[0].asInt());
  EXPECT_EQ(stateOf(desktop), Ky::KyValue::array({false, 0, "", ""}));
}

TEST_F(RecordingModules, TheToolboxHasTheSameRecorder) {
  Ky::KyVideoRecorderProxy recorder(desktop);
  Ky::KyVisionToolboxProxy toolbox(desktop);
  toolbox.startVideoRecord("clip");
  EXPECT_EQ(errorText([&] { recorder.startRecording(kFolder, "other"); }),
            "\"" + kFolder + "clip.avi\" is being recorded; stop that first");
  EXPECT_EQ(recorder.stopRecording()[1].asString(), kFolder + "clip.avi");
  recorder.startRecording("/home/tam/mine", "clip");
  EXPECT_EQ(toolbox.stopVideoRecord()[1].asString(), "/home/tam/mine/clip.avi");
  EXPECT_EQ(errorText([&] { toolbox.stopVideoRecord(); }),
            "nothing is being recorded; start a recording first");
}

TEST_F(RecordingModules, SizeAndRateAreOfTheFilmsThatBeginLater) {
  EXPECT_EQ(get("getResolution"), 1);
  EXPECT_EQ(get("getFrameRate"), 15);
  Ky::KyVideoRecorderProxy recorder(desktop);
  recorder.startRecording(kFolder, "small");
  set("setResolution", 2);
  set("setFrameRate", 30);
  ASSERT_TRUE(waitForFrames(desktop, 2));
  const Ky::KyValue small = recorder.stopRecording();
  recorder.startRecording(kFolder, "large");
  const Ky::KyValue large = recorder.stopRecording();
  expectFilm(onDisk(small[1].asString()), 320, 240, 15, small[0].asInt());
  expectFilm(onDisk(large[1].asString()), 640, 480, 30, large[0].asInt());
  EXPECT_NE(errorText([&] { set("setResolution", 4); }), "no error");
  EXPECT_NE(errorText([&] { set("setFrameRate", 0); }), "no error");
  EXPECT_EQ(get("getResolution"), 2);
  EXPECT_EQ(get("getFrameRate"), 30);
}

TEST_F(RecordingModules, AFilmGoesOnWhenItsDesktopLeaves) {
  Ky::KyVideoRecorderProxy(desktop).startRecording(kFolder, "clip");
  desktop->shutdown();
  const auto next = robot.connect();
  const std::string text = "info recorder: PeriscopeBroker has left; " + kFolder +
                           "clip.avi goes on until it is stopped";
  ASSERT_TRUE(waitUntil([&] {
    const auto lines = log.lines("kyrobot");
    return std::find(lines.begin(), lines.end(), text) != lines.end();
  }));
  ASSERT_TRUE(waitForFrames(next, 2));
  EXPECT_EQ(Ky::KyVideoRecorderProxy(next).stopRecording()[1].asString(), kFolder + "clip.avi");
}

TEST_F(RecordingModules, AFilmIsCompletedWhenItsModuleStops) {
  Ky::KyVideoRecorderProxy(desktop).startRecording(kFolder, "clip");
  ASSERT_TRUE(waitForFrames(desktop, 3));
  robot.broker()->unregisterModule("KyVideoRecorder");
  const FilmFacts facts = factsByOpenCv(onDisk(kFolder + "clip.avi"));
  EXPECT_GE(facts.frames, 3);
  expectFilm(onDisk(kFolder + "clip.avi"), 320, 240, 15, facts.frames);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "ky/error.h"
#include "robot/camera/cameras.h"
#include "robot/camera/open_source.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "test_film.h"
#include "test_folder.h"

namespace robot {
namespace {

using namespace std::chrono_literals;

std::shared_ptr<Cameras> generatedCameras() {
  return std::make_shared<Cameras>(std::array<std::unique_ptr<CameraSource>, kCameras>{
      openSource("generated", 0), openSource("generated", 1)});
}

const Wish kSmall{{0, kYuv422}, 30};

TEST(Camera, TakesNothingUntilSomebodyReads) {
  const auto cameras = generatedCameras();
  EXPECT_EQ(cameras->camera(0).framesTaken(), 0u);
  EXPECT_THROW(cameras->camera(0).newest(20s), Ky::KyError) << "at once: nobody asked for frames";
  const auto reader = cameras->read(kSmall);
  EXPECT_TRUE(waitUntil([&] { return cameras->camera(0).framesTaken() > 2; }));
  EXPECT_EQ(cameras->camera(1).framesTaken(), 0u) << "the other camera is not active";
}

TEST(Camera, RestsWhenTheLastReaderLeaves) {
  const auto cameras = generatedCameras();
  auto reader = cameras->read(kSmall);
  auto other = cameras->read(kSmall);
  reader->newest(20s);
  reader.reset();
  const auto before = cameras->camera(0).framesTaken();
  EXPECT_TRUE(waitUntil([&] { return cameras->camera(0).framesTaken() > before + 1; }));
  other.reset();
  // What was under way may still end; then there is no more, and the old frame is gone.
  EXPECT_THROW(cameras->camera(0).newest(20s), Ky::KyError);
}

TEST(Camera, GivesTheFirstFrameToAReaderWhoWaitsForIt) {
  const auto cameras = generatedCameras();
  const auto reader = cameras->read(kSmall);
  const auto frame = reader->newest(20s);
  EXPECT_EQ(frame->camera(), 0);
  EXPECT_EQ(frame->pixels(kSmall.format).size(), 160u * 120 * 2);
}

TEST(Camera, SharesOneFrameAmongAllItsReaders) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 2, 0.1);  // the next frame is ten seconds away
  const auto cameras = std::make_shared<Cameras>(std::array<std::unique_ptr<CameraSource>, 2>{
      openSource(folder / "film.avi", 0), openSource("generated", 1)});
  const auto one = cameras->read(kSmall);
  const auto two = cameras->read({{2, kGrey}, 5});
  EXPECT_EQ(one->newest(20s), two->newest(20s));
}

TEST(Camera, GivesNewerAndNewerFrames) {
  const auto cameras = generatedCameras();
  const auto reader = cameras->read(kSmall);
  const auto first = reader->newest(20s);
  EXPECT_TRUE(waitUntil([&] { return reader->newest(20s)->time() > first->time(); }));
}

TEST(Camera, ShowsTheOtherCameraToTheSameReaderAfterASwitch) {
  const auto cameras = generatedCameras();
  const auto reader = cameras->read(kSmall);
  EXPECT_EQ(reader->newest(20s)->camera(), 0);
  cameras->setActive(1);
  EXPECT_EQ(reader->newest(20s)->camera(), 1);
  EXPECT_EQ(cameras->active(), 1);
}

TEST(Camera, AppliesItsParametersToTheFramesThatFollow) {
  const auto cameras = generatedCameras();
  cameras->camera(0).setParameter(kContrast, 0);
  cameras->camera(0).setParameter(kBrightness, 0);
  const auto reader = cameras->read(kSmall);
  EXPECT_EQ(cv::countNonZero(reader->newest(20s)->picture().reshape(1)), 0);
}

TEST(Camera, AdaptsToItsPicturesInAnAutomaticModeAndTellsWhatItFound) {
  const auto cameras = generatedCameras();
  cameras->setActive(1);  // by night
  Camera& camera = cameras->camera(1);
  camera.setParameter(kAutoExposition, 1);
  EXPECT_EQ(camera.getParameter(kExposure), 255) << "nothing happens while nobody watches";
  const auto reader = cameras->read(kSmall);
  EXPECT_TRUE(waitUntil([&] { return camera.getParameter(kExposure) > 400; }));
  EXPECT_EQ(cameras->camera(0).getParameter(kExposure), 255) << "the other one's own";
}

// The newest frame, or why there is none.
std::string newestOf(const CameraReader& reader) {
  try {
    return "taken at " + std::to_string(reader.newest(0s)->time());
  } catch (const Ky::KyError& error) {
    return error.what();
  }
}

TEST(Camera, TakesTheLastFrameAwayWhenItsSourceIsGoneAndComesBackWithIt) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 3, 60);
  const LogCapture log;
  const auto cameras = std::make_shared<Cameras>(std::array<std::unique_ptr<CameraSource>, 2>{
      openSource(folder / "film.avi", 0), openSource("generated", 1)});
  const auto reader = cameras->read(kSmall);
  const auto last = reader->newest(20s);
  std::filesystem::remove(folder / "film.avi");

  const std::string lost =
      "error camera: camera 0 has lost its source: \"" + (folder / "film.avi") + "\" is gone";
  ASSERT_TRUE(waitUntil([&] { return log.lines("kyrobot") == std::vector{lost}; }));
  const std::string gone = "camera 0 has no picture: \"" + (folder / "film.avi") + "\" is gone";
  EXPECT_TRUE(waitUntil([&] { return newestOf(*reader) == gone; })) << newestOf(*reader);
  EXPECT_EQ(reader->next(last, 0s), nullptr) << "whoever waits for pictures is told of none";

  writeFilm(folder / "new.avi", 3, 60);
  std::filesystem::rename(folder / "new.avi", folder / "film.avi");
  EXPECT_TRUE(waitUntil([&] { return reader->next(last, 0s) != nullptr; }));
  EXPECT_GT(reader->newest(20s)->time(), last->time());
  EXPECT_EQ(log.lines("kyrobot"),
            (std::vector<std::string>{lost, "info camera: camera 0 has its source back"}));
}

TEST(Camera, SaysWhyThereIsNoPictureWhenItsSourceFailsBeforeTheFirst) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 1, 60);
  auto source = openSource(folder / "film.avi", 0);
  source->next();  // the film's only picture
  std::filesystem::remove(folder / "film.avi");
  const auto cameras = std::make_shared<Cameras>(
      std::array<std::unique_ptr<CameraSource>, 2>{std::move(source), openSource("generated", 1)});
  const auto reader = cameras->read(kSmall);
  try {
    reader->newest(20s);
    FAIL();
  } catch (const Ky::KyError& error) {
    EXPECT_EQ(std::string(error.what()),
              "camera 0 has no picture: \"" + (folder / "film.avi") + "\" is gone");
  }
}

TEST(Camera, EndsAtOnceWhileItsSourceIsGone) {
  const TestFolder folder;
  writeFilm(folder / "film.avi", 1, 60);
  const LogCapture log;
  auto cameras = std::make_shared<Cameras>(std::array<std::unique_ptr<CameraSource>, 2>{
      openSource(folder / "film.avi", 0), openSource("generated", 1)});
  auto reader = cameras->read(kSmall);
  std::filesystem::remove(folder / "film.avi");
  ASSERT_TRUE(waitUntil([&] { return !log.lines("kyrobot").empty(); }));
  reader.reset();
  cameras.reset();  // hangs if the camera doesn't listen while it waits to try again
}

}  // namespace
}  // namespace robot

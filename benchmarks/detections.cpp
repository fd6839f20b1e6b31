// SPDX-License-Identifier: Apache-2.0
// How often does each detector see something in a film in which there is nothing of its kind, and
// what does a look cost it?
//
//   bench-detections FILM
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/videoio.hpp>

#include "robot/camera/frame.h"
#include "robot/camera/pixels.h"
#include "robot/camera/scene_pictures.h"
#include "robot/extractors/faces/face_detector.h"
#include "robot/extractors/landmarks/landmark_detector.h"
#include "robot/extractors/pictures/picture_detector.h"
#include "robot/extractors/pictures/taught_folder.h"
#include "robot/extractors/toys/toy_detector.h"
#include "targets.h"

namespace {

using robot::Detector;

std::unique_ptr<Detector> makeBalls() {
  const auto tuning = std::make_shared<robot::SharedBallTuning>();
  tuning->set("multiBall", Ky::KyValue::array({true}));
  return std::make_unique<robot::BallDetector>(tuning);
}

std::unique_ptr<Detector> makeDucks() {
  const auto settings = std::make_shared<robot::ToySettings>();
  settings->wanted[robot::kDuck] = true;
  return std::make_unique<robot::ToyDetector>(settings,
                                              std::make_shared<robot::SharedBallTuning>());
}

// The pictures of the generated scene.
const std::filesystem::path kTaught =
    std::filesystem::temp_directory_path() / ("bench-detections-" + std::to_string(getpid()));

template <robot::PictureEntry entry>
std::unique_ptr<Detector> makePictures() {
  return std::make_unique<robot::PictureDetector>("Found", entry, kTaught, "bench-detections");
}

struct Kind {
  const char* things;
  std::unique_ptr<Detector> (*make)();
  std::size_t extra;  // entries that a finding has besides one for each thing
  double most;        // false ones, in all of the film
};

const Kind kKinds[] = {
    {"landmarks", [] { return std::unique_ptr<Detector>(new robot::LandmarkDetector); }, 0, 0},
    {"balls", makeBalls, 0, 0},
    {"ducks", makeDucks, 0, 0},
    {"faces", [] { return std::unique_ptr<Detector>(new robot::FaceDetector); }, 1, 0},
    {"logos", makePictures<robot::logoEntry>, 0, 0},
    {"pictures", makePictures<robot::pictureEntry>, 0, 0},
};

std::size_t thingsIn(const Kind& kind, const std::vector<robot::Finding>& findings) {
  std::size_t things = 0;
  for (const robot::Finding& finding : findings)
    if (finding.value.size() >= 2) things += finding.value[1].size() - kind.extra;
  return things;
}

double processorMs() {
  return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct Tally {
  const Kind& kind;
  std::unique_ptr<Detector> detector = kind.make();
  int framesWith = 0;
  std::size_t things = 0;
  double ms = 0;

  void look(const cv::Mat& picture, std::int64_t time) {
    const robot::Frame frame(picture, time, 0);
    const double before = processorMs();
    const std::size_t found = thingsIn(kind, detector->detect(frame));
    ms += processorMs() - before;
    framesWith += found > 0 ? 1 : 0;
    things += found;
  }
};

int run(const char* path) {
  cv::VideoCapture film(path);
  if (!film.isOpened()) {
    std::fprintf(stderr, "detections: \"%s\" is no film\n", path);
    return 1;
  }
  std::vector<Tally> tallies;
  for (const Kind& kind : kKinds) tallies.push_back({kind});
  int frames = 0;
  for (cv::Mat picture; film.read(picture); ++frames)
    for (Tally& tally : tallies) tally.look(robot::fitToCanvas(picture.clone()), 100000LL * frames);
  for (const Tally& tally : tallies) {
    std::printf("%-10s %4zu false in %3d of %d frames, %5.1f ms of processor time a look\n",
                tally.kind.things, tally.things, tally.framesWith, frames, tally.ms / frames);
    bench::atMost("false " + std::string(tally.kind.things) + " in a film of " +
                      std::to_string(frames) + " frames",
                  static_cast<double>(tally.things), tally.kind.most);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench-detections FILM\n");
    return 2;
  }
  cv::setNumThreads(1);
  robot::makeTaughtFolder(kTaught, "harbour", robot::paintHarbour());
  cv::imwrite((kTaught / "emblem.png").string(), robot::paintEmblem());
  const int code = run(argv[1]);
  std::filesystem::remove_all(kTaught);
  return code;
}

// SPDX-License-Identifier: Apache-2.0
#include "robot/robot.h"

#include <functional>
#include <utility>

#include "robot/camera/open_source.h"
#include "robot/camera/scene_pictures.h"
#include "robot/extractors/extractor.h"
#include "robot/extractors/faces/face_detector.h"
#include "robot/extractors/landmarks/landmark_detector.h"
#include "robot/extractors/pictures/picture_recognition.h"
#include "robot/extractors/pictures/taught_folder.h"
#include "robot/extractors/toys/ball_detection.h"
#include "robot/extractors/toys/colored_toys.h"
#include "robot/recording/photo_capture.h"
#include "robot/recording/video_recorder.h"
#include "robot/recording/vision_toolbox.h"
#include "robot/services/launcher.h"
#include "robot/services/logger.h"
#include "robot/services/memory.h"
#include "robot/services/video_device.h"
#include "zu/log.h"

namespace robot {
namespace {

using Ky::KyError;
using Ky::KyModule;

// What the modules are made from.
struct Parts {
  boost::shared_ptr<Ky::KyBroker> broker;
  std::shared_ptr<Cameras> cameras;
  const Options& options;
  std::shared_ptr<SharedBallTuning> ballTuning;
  HomeFolder home;
  std::shared_ptr<Recorder> recorder;
};

template <class Kind>
void createExtractor(const Parts& parts, const char* name, const char* what) {
  KyModule::createModule<Extractor>(parts.broker, parts.cameras, name, what,
                                    std::make_unique<Kind>());
}

// For modules that need what this computer may not have: without it the robot does without them.
void createIfPossible(const char* name, const std::function<void()>& create) {
  try {
    create();
  } catch (const KyError& error) {
    zu::log::warning("kyrobot", name) << "this robot has no " << name << ": " << error.what();
  }
}

void createLogos(const Parts& parts) {
  const auto folder = parts.options.logos.value_or(parts.options.home / "logos");
  makeTaughtFolder(folder, "periscope", paintEmblem());
  KyModule::createModule<PictureRecognition>(
      parts.broker, parts.cameras, "KyLogoDetection", "the logos that it was taught",
      std::make_unique<PictureDetector>("LogoDetected", logoEntry, folder, "KyLogoDetection"));
}

void createPictures(const Parts& parts) {
  const auto folder = parts.options.pictures.value_or(parts.options.home / "pictures");
  makeTaughtFolder(folder, "harbour days", paintHarbour());
  KyModule::createModule<PictureRecognition>(
      parts.broker, parts.cameras, "KyVisionRecognition", "the pictures that it was taught",
      std::make_unique<PictureDetector>("PictureDetected", pictureEntry, folder,
                                        "KyVisionRecognition"));
}

struct ModuleKind {
  const char* name;
  void (*create)(const Parts& parts);
};

constexpr ModuleKind kModules[] = {
    {"KyLogger", [](const Parts& parts) { KyModule::createModule<Logger>(parts.broker); }},
    {"KyMemory", [](const Parts& parts) { KyModule::createModule<Memory>(parts.broker); }},
    {"KyLauncher", [](const Parts& parts) { KyModule::createModule<Launcher>(parts.broker); }},
    {"KyVideoDevice",
     [](const Parts& parts) {
       KyModule::createModule<VideoDevice>(parts.broker, parts.cameras, parts.options.encoder);
     }},
    {"KyPhotoCapture",
     [](const Parts& parts) {
       KyModule::createModule<PhotoCapture>(parts.broker, parts.cameras, parts.home);
     }},
    {"KyVideoRecorder",
     [](const Parts& parts) {
       KyModule::createModule<VideoRecorder>(parts.broker, parts.recorder);
     }},
    {"KyVisionToolbox",
     [](const Parts& parts) {
       KyModule::createModule<VisionToolbox>(parts.broker, parts.cameras, parts.home,
                                             parts.recorder);
     }},
    {"KyLandMarkDetection",
     [](const Parts& parts) {
       createExtractor<LandmarkDetector>(parts, "KyLandMarkDetection", "landmarks");
     }},
    {"KyColoredToysDetection",
     [](const Parts& parts) {
       KyModule::createModule<ColoredToys>(parts.broker, parts.cameras, parts.ballTuning);
     }},
    {"KyBallDetection",
     [](const Parts& parts) {
       KyModule::createModule<BallDetection>(parts.broker, parts.cameras, parts.ballTuning);
     }},
    {"KyFaceDetection",
     [](const Parts& parts) {
       createIfPossible("KyFaceDetection",
                        [&] { createExtractor<FaceDetector>(parts, "KyFaceDetection", "faces"); });
     }},
    {"KyLogoDetection",
     [](const Parts& parts) { createIfPossible("KyLogoDetection", [&] { createLogos(parts); }); }},
    {"KyVisionRecognition",
     [](const Parts& parts) {
       createIfPossible("KyVisionRecognition", [&] { createPictures(parts); });
     }},
};

void makeHome(const std::filesystem::path& home) {
  std::error_code error;
  std::filesystem::create_directories(home, error);
  if (!std::filesystem::is_directory(home))
    throw KyError("the home folder \"" + home.string() + "\" can't be made: " +
                  (error ? error.message() : "there is a file of that name") +
                  "; choose another one with --home");
}

std::unique_ptr<CameraSource> openCamera(const Options& options, int camera) {
  try {
    return openSource(options.sources[static_cast<std::size_t>(camera)], camera);
  } catch (const KyError& error) {
    throw KyError("camera " + std::to_string(camera) + ": " + error.what());
  }
}

boost::shared_ptr<Ky::KyBroker> listen(const Options& options) {
  Ky::KyBrokerOptions broker;
  broker.name = "kyrobot";
  broker.listen = options.listen;
  broker.keys = options.keys;
  broker.insecure = options.insecure;
  broker.pipelining = true;
  return Ky::KyBroker::create(std::move(broker));
}

}  // namespace

std::vector<std::string> moduleNames() {
  std::vector<std::string> names;
  for (const ModuleKind& kind : kModules) names.emplace_back(kind.name);
  return names;
}

Robot::Robot(const Options& options) {
  makeHome(options.home);
  VideoDevice::requireEncoder(options.encoder);
  fCameras = std::make_shared<Cameras>(
      std::array<std::unique_ptr<CameraSource>, kCameras>{openCamera(options, 0),
                                                          openCamera(options, 1)},
      options.cameraModel);
  fBroker = listen(options);
  const HomeFolder home(options.home);
  const Parts parts{.broker = fBroker,
                    .cameras = fCameras,
                    .options = options,
                    .ballTuning = std::make_shared<SharedBallTuning>(),
                    .home = home,
                    .recorder = std::make_shared<Recorder>(fCameras, home)};
  for (const ModuleKind& kind : kModules)
    if (options.without.count(kind.name) == 0) kind.create(parts);
}

Robot::~Robot() {
  if (fBroker) fBroker->shutdown();
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// Photos and films on the robot: by the service made for it, or by the older toolbox.
#include <optional>
#include <string>

#include "ky/photo_capture_proxy.h"
#include "ky/video_recorder_proxy.h"
#include "ky/vision_toolbox_proxy.h"
#include "viewer/core/module.h"
#include "viewer/core/videorecordermodel.h"
#include "zu/log.h"

namespace {

const std::string kPhotoName = "lookout_photo";

void logError(const char* method, const char* lead, const Ky::KyError& error) {
  zu::log::error("periscope", method) << lead << error.what();
}

void warnOfFallback(const char* method, const char* service, const Ky::KyError& error) {
  zu::log::warning("periscope", method)
      << "Error while getting proxy on " << service << ": " << error.what();
  zu::log::warning("periscope", method) << "Trying to use KyVisionToolbox instead...";
}

// Runs `use` on the toolbox. Why it was in vain, and a line in the log, when there is none or `use`
// fails.
template <class Use>
std::optional<std::string> withToolbox(const boost::shared_ptr<Ky::KyBroker>& broker,
                                       const char* method, const char* failure, Use use) {
  boost::shared_ptr<Ky::KyVisionToolboxProxy> toolbox;
  try {
    toolbox.reset(new Ky::KyVisionToolboxProxy(broker));
  } catch (const Ky::KyError& error) {
    logError(method, "Error while getting proxy on KyVisionToolbox: ", error);
    return error.toString();
  }
  try {
    use(*toolbox);
    return std::nullopt;
  } catch (const Ky::KyError& error) {
    logError(method, failure, error);
    return error.what();
  }
}

// Empty when the service did not tell.
std::string pathOf(const Ky::KyValue& answer) {
  return answer.isString() ? answer.asString() : std::string();
}

void startRecording(const boost::shared_ptr<Ky::KyBroker>& broker, VideoRecorderModel& recorder) {
  recorder.fRunningPath = kRecordPath + recorder.fRecordName + ".avi";  // unless it is told
  try {
    const std::string path =
        pathOf(Ky::KyVideoRecorderProxy(broker).startRecording(kRecordPath, recorder.fRecordName));
    if (!path.empty()) recorder.fRunningPath = path;
    recorder.fIsRecording = true;
  } catch (const Ky::KyError& error) {
    warnOfFallback("toggleVideoRecord", "KyVideoRecorder", error);
    recorder.fIsRecording = !withToolbox(broker, "toggleVideoRecord",
                                         "Unable to start video record: ", [&](auto& toolbox) {
                                           toolbox.startVideoRecord(recorder.fRecordName);
                                         });
  }
}

// Nothing when no service answered.
Ky::KyValue stopRecording(const boost::shared_ptr<Ky::KyBroker>& broker) {
  Ky::KyValue result;
  try {
    result = Ky::KyVideoRecorderProxy(broker).stopRecording();
  } catch (const Ky::KyError& error) {
    warnOfFallback("toggleVideoRecord", "KyVideoRecorder", error);
    withToolbox(broker, "toggleVideoRecord", "Unable to stop video record: ", [&](auto& toolbox) {
      result = toolbox.stopVideoRecord();
    });
  }
  return result;
}

// True when the robot reported a film. Without a report the recording counts as running, so that
// the user can stop it again.
bool takeReport(const Ky::KyValue& result, VideoRecorderModel& recorder) {
  if (!result.isArray() || result.size() == 0) return false;
  try {
    const int frames = result[0].asInt();
    recorder.fFilePath = result[1].asString();
    recorder.fFrameCount = frames;
  } catch (const Ky::KyError& error) {
    logError("toggleVideoRecord", "Unable to stop video record: ", error);
    return false;
  }
  recorder.fIsRecording = false;
  return true;
}

// What the recorder's getState() says of one film.
struct FilmState {
  int frames;
  std::string trouble;  // why it ended by itself; empty when it did not
};

// Nothing when that film is stopped, or the robot never knew it.
std::optional<FilmState> stateOf(const std::string& path, const Ky::KyValue& state) {
  if (state[2].asString() != path) return std::nullopt;
  return FilmState{state[1].asInt(), state[3].asString()};
}

}  // namespace

void Module::takePicture() {
  const zu::log::Subject robot(fRobot);
  fLastPhoto = PhotoReport();
  const auto& broker = getParentBroker();
  boost::shared_ptr<Ky::KyPhotoCaptureProxy> photos;
  try {
    photos.reset(new Ky::KyPhotoCaptureProxy(broker));
  } catch (const Ky::KyError& error) {
    warnOfFallback("takePicture", "KyPhotoCapture", error);
    fLastPhoto.error =
        withToolbox(broker, "takePicture",
                    "Unable to take a picture: ", [](auto& toolbox) { toolbox.takePicture(); });
    return;
  }
  try {
    fLastPhoto.path = pathOf(photos->takePicture(kRecordPath, kPhotoName));
  } catch (const Ky::KyError& error) {
    fLastPhoto.error = error.what();
    logError("takePicture", "Unable to take a picture: ", error);
  }
}

// The frame rate is the robot's to choose.
void Module::toggleVideoRecord(const std::string& name, int, bool& recorded) {
  recorded = false;
  const zu::log::Subject robot(fRobot);
  const boost::shared_ptr<VideoRecorderModel> recorder = fModel->fVideoRecorder;
  if (!recorder) return;
  if (GCInterface* gui = fGui) gui->selectVideoRecorderView();
  if (!recorder->setRecordName(name))
    throw Ky::KyError(getName(), "toggleVideoRecord", "Invalid video name.");
  if (recorder->fIsRecording) {
    recorded = takeReport(stopRecording(getParentBroker()), *recorder);
  } else {
    startRecording(getParentBroker(), *recorder);
  }
  if (GCInterface* gui = fGui) gui->updateVideoRecorderView();
}

// It is taken up by its path, which no other film ever has: everybody's films may have one name. A
// film that has ended by itself counts as recorded until it is stopped, as in the viewer that began
// it.
bool Module::takeUpFilm(const std::string& name, const std::string& path) {
  const auto& broker = getParentBroker();
  const boost::shared_ptr<VideoRecorderModel> recorder = fModel->fVideoRecorder;
  if (!recorder || recorder->fIsRecording || path.empty()) return false;
  if (!broker->offers("KyVideoRecorder", "getState")) return false;
  const zu::log::Subject robot(fRobot);
  try {
    Ky::KyVideoRecorderProxy service(broker);
    const auto film = stateOf(path, service.getState());
    if (!film || !recorder->setRecordName(name)) return false;
    if (broker->offers("KyVideoRecorder", "takeOver") && !service.takeOver(path)) return false;
    recorder->fFrameCount = film->frames;
    if (!film->trouble.empty())
      zu::log::warning("periscope", "takeUpFilm")
          << "The film has ended by itself: " << film->trouble;
  } catch (const Ky::KyError& error) {
    logError("takeUpFilm", "Unable to ask for the film: ", error);
    return false;
  }
  recorder->fRunningPath = path;
  recorder->fIsRecording = true;
  if (GCInterface* gui = fGui) {
    gui->selectVideoRecorderView();
    gui->updateVideoRecorderView();
  }
  return true;
}

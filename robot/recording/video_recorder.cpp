// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/video_recorder.h"

namespace robot {

VideoRecorder::VideoRecorder(boost::shared_ptr<Ky::KyBroker> broker,
                             std::shared_ptr<Recorder> recorder)
    : KyModule(std::move(broker), "KyVideoRecorder"), fRecorder(std::move(recorder)) {
  setModuleDescription("Records films of what the active camera sees, one at a time.");
  publishRecording();
  publishSettings();
}

void VideoRecorder::publishRecording() {
  functionName("startRecording", getName(),
               "Begins a film. No file is overwritten: a second one of its name gets a number.");
  addParam("folder", "in the robot's home, such as /home/tam/recordings/cameras/; made if missing");
  addParam("fileName", "without .avi");
  setReturn("path", "of the film");
  bindMethod(&VideoRecorder::startRecording);

  functionName("stopRecording", getName(),
               "Ends the film; also tells of one that has ended by itself.");
  setReturn("film", "[number of frames, path]");
  bindMethod(&VideoRecorder::stopRecording);

  functionName("getState", getName(), "What the recorder does.");
  setReturn("state",
            "[recording?, number of frames, path, why it ended by itself] of the film that nobody "
            "has stopped yet; the texts are empty where there is none");
  bindMethod(&VideoRecorder::getState);
  offer("getState");

  functionName("takeOver", getName(),
               "Makes the film one's own, as if one had begun it: for a program that lost the "
               "connection meanwhile.");
  addParam("path", "of the film");
  setReturn("done", "false when that film is stopped, or made way for another one");
  bindMethod(&VideoRecorder::takeOver);
  offer("takeOver");
}

void VideoRecorder::publishSettings() {
  functionName("getResolution", getName(), "The size of films that begin from now on.");
  setReturn("resolution", "0 160x120, 1 320x240, 2 640x480, 3 1280x960");
  bindMethod(&VideoRecorder::getResolution);

  functionName("setResolution", getName(), "Changes the size of films that begin from now on.");
  addParam("resolution", "0 160x120, 1 320x240 (at first), 2 640x480, 3 1280x960");
  bindMethod(&VideoRecorder::setResolution);

  functionName("getFrameRate", getName(), "The frame rate of films that begin from now on.");
  setReturn("fps", "frames a second");
  bindMethod(&VideoRecorder::getFrameRate);

  functionName("setFrameRate", getName(),
               "Changes the frame rate of films that begin from now on.");
  addParam("fps", "frames a second, 1 to 30; 15 at first");
  bindMethod(&VideoRecorder::setFrameRate);
}

std::string VideoRecorder::startRecording(const Ky::KyPeer& caller, const std::string& folder,
                                          const std::string& fileName) {
  return fRecorder->start(caller, folder, fileName);
}

Ky::KyValue VideoRecorder::stopRecording() {
  return fRecorder->stop().toValue();
}

Ky::KyValue VideoRecorder::getState() {
  const Recorder::State state = fRecorder->state();
  return Ky::KyValue::array({state.isRecording, state.film.frames, state.film.path, state.trouble});
}

bool VideoRecorder::takeOver(const Ky::KyPeer& caller, const std::string& path) {
  return fRecorder->takeOver(caller, path);
}

int VideoRecorder::getResolution() {
  return fRecorder->settings().resolution;
}

int VideoRecorder::getFrameRate() {
  return fRecorder->settings().fps;
}

void VideoRecorder::setResolution(int resolution) {
  fRecorder->setSettings({resolution, getFrameRate()});
}

void VideoRecorder::setFrameRate(int fps) {
  fRecorder->setSettings({getResolution(), fps});
}

}  // namespace robot

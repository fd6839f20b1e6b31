// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/recorder.h"

#include "ky/error.h"
#include "zu/log.h"

namespace robot {
namespace {

using Ky::KyError;

void log(const Recording& film, const char* what) {
  zu::log::info("kyrobot", "recorder")
      << film.path() << what << " after " << film.frames() << " frames";
}

}  // namespace

Recorder::Recorder(std::shared_ptr<Cameras> cameras, HomeFolder home)
    : fCameras(std::move(cameras)), fHome(std::move(home)) {
}

std::string Recorder::start(const Ky::KyPeer& caller, const std::string& folder,
                            const std::string& name) {
  const zu::MutexLock guard(fMutex);
  makeWay();
  fRecording = std::make_unique<Recording>(*fCameras, fHome, fSettings, folder, name);
  fOwner = caller;
  fIsAbandoned = false;
  zu::log::info("kyrobot", "recorder") << "recording " << fRecording->path();
  return fRecording->path();
}

void Recorder::makeWay() {
  if (!fRecording) return;
  if (fRecording->isRunning() && !fIsAbandoned)
    throw KyError("\"" + fRecording->path() + "\" is being recorded; stop that first");
  fRecording->stop();
  log(*fRecording, " made way for another film");
  fRecording.reset();
}

bool Recorder::takeOver(const Ky::KyPeer& caller, const std::string& path) {
  const zu::MutexLock guard(fMutex);
  if (!fRecording || fRecording->path() != path) return false;
  fOwner = caller;
  fIsAbandoned = false;
  zu::log::info("kyrobot", "recorder") << path << " was taken over by " << fOwner.name;
  return true;
}

Recorder::Film Recorder::stop() {
  const zu::MutexLock guard(fMutex);
  if (!fRecording) throw KyError("nothing is being recorded; start a recording first");
  fRecording->stop();
  log(*fRecording, " was stopped");
  const auto film = std::exchange(fRecording, nullptr);
  return {film->frames(), film->path()};
}

void Recorder::end() {
  const zu::MutexLock guard(fMutex);
  if (!fRecording || !fRecording->isRunning()) return;
  fRecording->stop();
  log(*fRecording, " ends with the robot");
}

void Recorder::peerLeft(const Ky::KyPeer& peer) {
  const zu::MutexLock guard(fMutex);
  if (!fRecording || !fRecording->isRunning() || fIsAbandoned || !(peer == fOwner)) return;
  fIsAbandoned = true;
  zu::log::info("kyrobot", "recorder")
      << fOwner.name << " has left; " << fRecording->path() << " goes on until it is stopped";
}

Recorder::State Recorder::state() const {
  const zu::MutexLock guard(fMutex);
  if (!fRecording) return {};
  return {
      fRecording->isRunning(), {fRecording->frames(), fRecording->path()}, fRecording->trouble()};
}

FilmSettings Recorder::settings() const {
  const zu::MutexLock guard(fMutex);
  return fSettings;
}

void Recorder::setSettings(const FilmSettings& settings) {
  requireResolution(settings.resolution);
  if (!isFrameRate(settings.fps))
    throw KyError("films can't have " + std::to_string(settings.fps) + " frames a second; 1 to " +
                  std::to_string(kMaxFps) + " they can");
  const zu::MutexLock guard(fMutex);
  fSettings = settings;
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "film.h"

namespace {

const std::string kRecorder = "KyVideoRecorder";

}  // namespace

// Another program does.
Ky::KyValue Film::ask(const std::string& method) {
  return fWorker.wait([&] { return fStage.call(kRecorder, method); });
}

void Film::start() {
  if (fRunning) return;
  fPath = fDesktop
              .call(kRecorder, "startRecording",
                    {Ky::KyValue("/home/tam/recordings/cameras/"), Ky::KyValue("chaos")})
              .asString();
  fFrames = 0;
  fRunning = true;
}

void Film::stop() {
  if (!fRunning) return;
  ask("stopRecording");
  fRunning = false;
}

std::string Film::wrong() {
  if (!fRunning) return {};
  try {
    const Ky::KyValue state = ask("getState");  // [recording?, frames, path, ..]
    if (!state[0].asBool()) return "the film has ended: " + state[3].asString();
    if (state[2].asString() != fPath) return "another film is being recorded";
    const int frames = state[1].asInt();
    if (frames <= fFrames) return "the film stands still";
    fFrames = frames;
    return {};
  } catch (const Ky::KyError& error) {
    return std::string("the recorder can't be asked: ") + error.what();
  }
}

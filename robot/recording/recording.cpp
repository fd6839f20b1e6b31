// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/recording.h"

#include "ky/error.h"
#include "zu/log.h"

namespace robot {
namespace {

constexpr std::chrono::milliseconds kFirstFrame{500};
constexpr std::chrono::milliseconds kPatience{100};

// The thread asks for its own size itself, of the pictures that it takes.
std::unique_ptr<CameraReader> readAt(Cameras& cameras, int fps) {
  return cameras.read({{0, kGrey}, fps});
}

}  // namespace

Recording::Recording(Cameras& cameras, const HomeFolder& home, const FilmSettings& settings,
                     const std::string& folder, const std::string& name)
    : fSettings(settings),
      fReader(readAt(cameras, settings.fps)),
      fSeen(fReader->newest(kFirstFrame)),
      fFile(home.create(folder, name, ".avi"), sizeOf(settings.resolution), settings.fps),
      fPacing(settings.fps),
      fThread([this](const std::stop_token& stop) { run(stop); }) {
}

Recording::~Recording() {
  stop();
}

void Recording::stop() {
  const zu::MutexLock guard(fStopMutex);
  fThread.request_stop();
  if (fThread.joinable()) fThread.join();
}

std::string Recording::trouble() const {
  const zu::MutexLock guard(fMutex);
  return fTrouble;
}

void Recording::run(const std::stop_token& stop) {
  try {
    record(stop);
  } catch (const std::exception& error) {  // OpenCV has exceptions of its own
    zu::log::error("kyrobot", "recorder") << path() << " ends here: " << error.what();
    const zu::MutexLock guard(fMutex);
    fTrouble = error.what();
  }
  fReader.reset();
  fFile.finish();
  fRunning = false;
}

void Recording::record(const std::stop_token& stop) {
  take(fSeen);
  while (!stop.stop_requested())
    if (auto frame = fReader->next(fSeen, kPatience)) take(frame);
}

void Recording::take(const std::shared_ptr<const Frame>& frame) {
  fSeen = frame;
  const FilmPacing::Step step = fPacing.next(frame->time());
  for (int i = 0; i < step.repeats; ++i) write(*fShown);
  if (!step.isTaken) return;
  write(*frame);
  fShown = frame;
}

void Recording::write(const Frame& frame) {
  if (fFrames >= std::chrono::seconds(kLongest).count() * fSettings.fps)
    throw Ky::KyError("a recording may be " + std::to_string(kLongest.count()) + " hours long");
  fFile.write(frame.picture(fSettings.resolution));
  fFrames = fFile.frames();
}

}  // namespace robot

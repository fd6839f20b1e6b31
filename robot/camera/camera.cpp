// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/camera.h"

#include <algorithm>
#include <exception>

#include "ky/error.h"
#include "robot/camera/automatic_modes.h"
#include "robot/camera/pixels.h"
#include "zu/log.h"

namespace robot {
namespace {

constexpr std::chrono::milliseconds kFirstRetry{500};
constexpr std::chrono::milliseconds kLastRetry{8000};
constexpr std::chrono::milliseconds kUnnoticed{1000};

int fastest(const std::vector<Wish>& wishes) {
  int fps = 1;
  for (const Wish& wish : wishes) fps = std::max(fps, wish.fps);
  return fps;
}

}  // namespace

Camera::Camera(int index, std::unique_ptr<CameraSource> source, int model)
    : fIndex(index),
      fSource(std::move(source)),
      fSourceControls(fSource->controls()),
      fParameters(model),
      fThread([this] { run(); }) {
}

Camera::~Camera() {
  {
    const zu::MutexLock guard(fMutex);
    fStop = true;
  }
  fChanged.notifyAll();
  fThread.join();
}

void Camera::setWishes(std::vector<Wish> wishes) {
  {
    const zu::MutexLock guard(fMutex);
    fWishes = std::move(wishes);
    // Whoever comes next shall not be shown a picture of long ago.
    if (fWishes.empty()) fNewest.reset();
  }
  fChanged.notifyAll();
}

int Camera::getParameter(int id) const {
  const zu::MutexLock guard(fMutex);
  const ParameterRange range = fParameters.range(id);
  const int value = fParameters.get(id);
  const zu::MutexUnlock meanwhile(fMutex);  // a device may take its time
  return fSourceControls == nullptr ? value : fSourceControls->get(range).value_or(value);
}

void Camera::setParameter(int id, int value) {
  const zu::MutexLock guard(fMutex);
  fParameters.check(id, value);
  const ParameterRange range = fParameters.range(id);
  if (fSourceControls != nullptr) {
    const zu::MutexUnlock meanwhile(fMutex);
    if (fSourceControls->set(range, value)) return;
  }
  fParameters.set(id, value);
}

std::shared_ptr<const Frame> Camera::newest(std::chrono::milliseconds patience) const {
  const auto end = Clock::now() + patience;
  const zu::MutexLock guard(fMutex);
  while (!fNewest && fFailure.empty() && !fWishes.empty() && !fStop &&
         fChanged.waitUntil(fMutex, end)) {
  }
  if (fNewest) return fNewest;
  const std::string camera = "camera " + std::to_string(fIndex);
  if (!fFailure.empty()) throw Ky::KyError(camera + " has no picture: " + fFailure);
  throw Ky::KyError(camera + " has no picture yet; try again");
}

std::shared_ptr<const Frame> Camera::next(const std::shared_ptr<const Frame>& known,
                                          std::chrono::milliseconds patience) const {
  const auto end = Clock::now() + patience;
  const zu::MutexLock guard(fMutex);
  while ((!fNewest || fNewest == known) && fChanged.waitUntil(fMutex, end)) {
  }
  return fNewest == known ? nullptr : fNewest;
}

std::uint64_t Camera::framesTaken() const {
  const zu::MutexLock guard(fMutex);
  return fTaken;
}

void Camera::run() {
  const zu::MutexLock guard(fMutex);
  while (waitForTurn()) takeOne();
}

// False when it is time to end.
bool Camera::waitForTurn() {
  while (!fStop) {
    if (fWishes.empty()) {
      {
        const zu::MutexUnlock meanwhile(fMutex);
        fSource->rest();
      }
      while (!fStop && fWishes.empty()) fChanged.wait(fMutex);
      continue;
    }
    const auto period = fSource->period(fastest(fWishes));
    const auto now = Clock::now();
    Clock::time_point turn = fLastTurn + period;
    if (turn < now - period) turn = now;  // too late to catch up
    if (turn <= now) {
      fLastTurn = turn;
      return true;
    }
    fChanged.waitUntil(fMutex, turn);
  }
  return false;
}

// What to do to a picture, now that the automatic modes have seen it.
PictureControls Camera::tune(const cv::Mat& picture) {
  const zu::MutexLock guard(fMutex);
  if (isAutomatic(fParameters)) adapt(fParameters, meanColour(picture));
  return fParameters.controls();
}

std::shared_ptr<const Frame> Camera::shoot(const std::vector<Wish>& wishes) {
  const SourcePicture taken = fSource->next();
  auto frame =
      std::make_shared<Frame>(fitToCanvas(taken.picture), taken.time, fIndex, tune(taken.picture));
  for (const Wish& wish : wishes) frame->pixels(wish.format);
  return frame;
}

void Camera::takeOne() {
  const std::vector<Wish> wishes = fWishes;
  std::shared_ptr<const Frame> frame;
  std::string failure;
  {
    const zu::MutexUnlock meanwhile(fMutex);
    try {
      frame = shoot(wishes);
    } catch (const std::exception& error) {  // OpenCV has exceptions of its own
      failure = error.what();
    }
  }
  if (!frame) return recover(failure);
  ++fTaken;
  fFailedAt.reset();
  if (!fWishes.empty()) fNewest.swap(frame);
  fChanged.notifyAll();
  const zu::MutexUnlock meanwhile(fMutex);
  frame.reset();  // the one before: nobody waits while its memory is given back
}

// Why that failed; empty when it did not.
std::string Camera::reopen() {
  const zu::MutexUnlock meanwhile(fMutex);
  try {
    fSource->open();
    return {};
  } catch (const std::exception& error) {
    return error.what();
  }
}

void Camera::dropStale() {
  if (Clock::now() - *fFailedAt > kUnnoticed) fNewest.reset();
}

void Camera::recover(const std::string& why) {
  zu::log::error("kyrobot", "camera") << "camera " << fIndex << " has lost its source: " << why;
  fFailure = why;
  fFailedAt = fFailedAt.value_or(Clock::now());
  dropStale();
  fChanged.notifyAll();
  for (auto pause = kFirstRetry; !fStop; pause = std::min(2 * pause, kLastRetry)) {
    const auto end = Clock::now() + pause;
    while (!fStop && fChanged.waitUntil(fMutex, end)) {
    }
    if (fStop) return;
    fFailure = reopen();
    if (fFailure.empty()) break;
    dropStale();
  }
  if (!fStop) zu::log::info("kyrobot", "camera") << "camera " << fIndex << " has its source back";
}

}  // namespace robot

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
    const std::lock_guard guard(fMutex);
    fStop = true;
  }
  fChanged.notify_all();
  fThread.join();
}

void Camera::setWishes(std::vector<Wish> wishes) {
  {
    const std::lock_guard guard(fMutex);
    fWishes = std::move(wishes);
    // Whoever comes next shall not be shown a picture of long ago.
    if (fWishes.empty()) fNewest.reset();
  }
  fChanged.notify_all();
}

int Camera::getParameter(int id) const {
  std::unique_lock lock(fMutex);
  const ParameterRange range = fParameters.range(id);
  const int value = fParameters.get(id);
  lock.unlock();  // a device may take its time
  return fSourceControls == nullptr ? value : fSourceControls->get(range).value_or(value);
}

void Camera::setParameter(int id, int value) {
  std::unique_lock lock(fMutex);
  fParameters.check(id, value);
  const ParameterRange range = fParameters.range(id);
  lock.unlock();
  if (fSourceControls != nullptr && fSourceControls->set(range, value)) return;
  lock.lock();
  fParameters.set(id, value);
}

std::shared_ptr<const Frame> Camera::newest(std::chrono::milliseconds patience) const {
  std::unique_lock lock(fMutex);
  fChanged.wait_for(lock, patience,
                    [&] { return fNewest || !fFailure.empty() || fWishes.empty() || fStop; });
  if (fNewest) return fNewest;
  const std::string camera = "camera " + std::to_string(fIndex);
  if (!fFailure.empty()) throw Ky::KyError(camera + " has no picture: " + fFailure);
  throw Ky::KyError(camera + " has no picture yet; try again");
}

std::shared_ptr<const Frame> Camera::next(const std::shared_ptr<const Frame>& known,
                                          std::chrono::milliseconds patience) const {
  std::unique_lock lock(fMutex);
  const auto isThere = [&] { return fNewest && fNewest != known; };
  return fChanged.wait_for(lock, patience, isThere) ? fNewest : nullptr;
}

std::uint64_t Camera::framesTaken() const {
  const std::lock_guard guard(fMutex);
  return fTaken;
}

void Camera::run() {
  std::unique_lock lock(fMutex);
  while (waitForTurn(lock)) takeOne(lock);
}

// False when it is time to end.
bool Camera::waitForTurn(std::unique_lock<std::mutex>& lock) {
  while (!fStop) {
    if (fWishes.empty()) {
      lock.unlock();
      fSource->rest();
      lock.lock();
      fChanged.wait(lock, [&] { return fStop || !fWishes.empty(); });
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
    fChanged.wait_until(lock, turn);
  }
  return false;
}

// What to do to a picture, now that the automatic modes have seen it.
PictureControls Camera::tune(const cv::Mat& picture) {
  const std::lock_guard guard(fMutex);
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

void Camera::takeOne(std::unique_lock<std::mutex>& lock) {
  const std::vector<Wish> wishes = fWishes;
  lock.unlock();
  try {
    auto frame = shoot(wishes);
    lock.lock();
    ++fTaken;
    // The one before is released outside the lock.
    if (!fWishes.empty()) fNewest.swap(frame);
    lock.unlock();
    fChanged.notify_all();
  } catch (const std::exception& error) {  // OpenCV has exceptions of its own
    lock.lock();
    recover(lock, error.what());
    return;
  }
  lock.lock();
}

void Camera::recover(std::unique_lock<std::mutex>& lock, const std::string& why) {
  zu::log::error("kyrobot", "camera") << "camera " << fIndex << " has lost its source: " << why;
  fFailure = why;
  fChanged.notify_all();
  for (auto pause = kFirstRetry; !fStop; pause = std::min(2 * pause, kLastRetry)) {
    if (fChanged.wait_for(lock, pause, [&] { return fStop; })) return;
    lock.unlock();
    std::string failure;
    try {
      fSource->open();
    } catch (const std::exception& error) {
      failure = error.what();
    }
    lock.lock();
    fFailure = failure;
    if (failure.empty()) break;
  }
  if (!fStop) zu::log::info("kyrobot", "camera") << "camera " << fIndex << " has its source back";
}

}  // namespace robot

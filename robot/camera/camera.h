// SPDX-License-Identifier: Apache-2.0
// Takes pictures from a source on a thread of its own, for as long as somebody wants them.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "robot/camera/camera_parameters.h"
#include "robot/camera/frame.h"
#include "robot/camera/image_format.h"
#include "robot/camera/source.h"
#include "zu/mutex.h"

namespace robot {

// Thread-safe.
//
// When the source fails, it is opened again and again: after half a second first, then less and
// less often, down to every eight seconds. Readers don't notice a failure of less than a second:
// the last frame stays. Then it is taken away, for a camera that is gone shall not look alive.
class Camera {
 public:
  // `source` is open. `model`: 1 or 2.
  Camera(int index, std::unique_ptr<CameraSource> source, int model);
  ~Camera();
  Camera(const Camera&) = delete;
  Camera& operator=(const Camera&) = delete;

  // What the readers of the moment want; none: the camera rests and costs nothing. The formats are
  // ready in each frame before a reader sees it.
  void setWishes(std::vector<Wish> wishes);

  // The camera's own parameters, done by the source where it can and else by arithmetic on the
  // frames that follow. Both throw KyError for a parameter that the model lacks or that there is
  // not, and when the source refuses; set() also for a value out of range. get() tells what an
  // automatic mode has found.
  int getParameter(int id) const;
  void setParameter(int id, int value);

  // The newest frame; right after the camera has begun it waits a little for the first. Throws
  // KyError when none came, or at once when nobody wished for one or the source is gone: the text
  // has the source and why, and is the same until another attempt fails in another way.
  std::shared_ptr<const Frame> newest(std::chrono::milliseconds patience) const;
  // The newest frame as soon as it is another one than `known`; null when none has come by the end
  // of the patience.
  std::shared_ptr<const Frame> next(const std::shared_ptr<const Frame>& known,
                                    std::chrono::milliseconds patience) const;

  // Frames taken since the start.
  std::uint64_t framesTaken() const;

 private:
  using Clock = std::chrono::steady_clock;

  void run();
  bool waitForTurn() ZU_REQUIRES(fMutex);
  void takeOne() ZU_REQUIRES(fMutex);
  void recover(const std::string& why) ZU_REQUIRES(fMutex);
  std::string reopen() ZU_REQUIRES(fMutex);
  void dropStale() ZU_REQUIRES(fMutex);
  std::shared_ptr<const Frame> shoot(const std::vector<Wish>& wishes);
  PictureControls tune(const cv::Mat& picture);

  const int fIndex;
  const std::unique_ptr<CameraSource> fSource;  // the thread's own, but for its controls
  SourceControls* const fSourceControls;        // may be null

  mutable zu::Mutex fMutex;
  mutable zu::ConditionVariable fChanged;
  std::vector<Wish> fWishes ZU_GUARDED_BY(fMutex);
  CameraParameters fParameters ZU_GUARDED_BY(fMutex);  // of what the source can't do
  std::shared_ptr<const Frame> fNewest ZU_GUARDED_BY(fMutex);
  std::uint64_t fTaken ZU_GUARDED_BY(fMutex) = 0;
  // Why the source gives no pictures; empty when it does.
  std::string fFailure ZU_GUARDED_BY(fMutex);
  // When it failed first since the newest frame; unset while it gives frames.
  std::optional<Clock::time_point> fFailedAt ZU_GUARDED_BY(fMutex);
  Clock::time_point fLastTurn ZU_GUARDED_BY(fMutex);
  bool fStop ZU_GUARDED_BY(fMutex) = false;

  std::thread fThread;
};

}  // namespace robot

// Takes pictures from a source on a thread of its own, for as long as somebody wants them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "robot/camera/camera_parameters.h"
#include "robot/camera/frame.h"
#include "robot/camera/image_format.h"
#include "robot/camera/source.h"

namespace robot {

// Thread-safe.
//
// When the source fails, the last frame stays and the source is opened again and again: after half
// a second first, then less and less often, down to every eight seconds.
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
  // KyError when none came, or at once when nobody wished for one or the source has failed.
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
  bool waitForTurn(std::unique_lock<std::mutex>& lock);
  void takeOne(std::unique_lock<std::mutex>& lock);
  void recover(std::unique_lock<std::mutex>& lock, const std::string& why);
  std::shared_ptr<const Frame> shoot(const std::vector<Wish>& wishes);
  PictureControls tune(const cv::Mat& picture);

  const int fIndex;
  const std::unique_ptr<CameraSource> fSource;  // the thread's own, but for its controls
  SourceControls* const fSourceControls;        // may be null

  mutable std::mutex fMutex;
  mutable std::condition_variable fChanged;
  // All below are guarded by fMutex.
  std::vector<Wish> fWishes;
  CameraParameters fParameters;  // of what the source can't do
  std::shared_ptr<const Frame> fNewest;
  std::uint64_t fTaken = 0;
  std::string fFailure;  // why the source gives no pictures; empty when it does
  Clock::time_point fLastTurn;
  bool fStop = false;

  std::thread fThread;
};

}  // namespace robot

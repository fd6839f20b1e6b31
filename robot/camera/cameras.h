// SPDX-License-Identifier: Apache-2.0
// The robot's two cameras, one of which is active, and those who read its pictures.
#pragma once

#include <array>
#include <map>
#include <memory>

#include "robot/camera/camera.h"
#include "zu/mutex.h"

namespace robot {

constexpr int kCameras = 2;

class CameraReader;

// Thread-safe. Only the active camera takes pictures.
class Cameras : public std::enable_shared_from_this<Cameras> {
 public:
  // The sources are open. `model` of both: 1 or 2.
  explicit Cameras(std::array<std::unique_ptr<CameraSource>, kCameras> sources, int model = 1);

  int model() const { return fModel; }
  int active() const;
  // `camera`: 0 or 1.
  void setActive(int camera);
  Camera& camera(int index) { return *fCameras.at(static_cast<std::size_t>(index)); }

  // Begins to read. The camera works for as long as there is a reader.
  std::unique_ptr<CameraReader> read(const Wish& wish);

 private:
  friend class CameraReader;
  void tellWishes() ZU_REQUIRES(fMutex);

  const int fModel;
  mutable zu::Mutex fMutex;
  int fActive ZU_GUARDED_BY(fMutex) = 0;
  std::map<const CameraReader*, Wish> fReaders ZU_GUARDED_BY(fMutex);
  std::array<std::unique_ptr<Camera>, kCameras> fCameras;
};

// One who reads the active camera's pictures. Keeps the cameras alive. Thread-safe.
class CameraReader {
 public:
  ~CameraReader();
  CameraReader(const CameraReader&) = delete;
  CameraReader& operator=(const CameraReader&) = delete;

  Wish wish() const;
  void setWish(const Wish& wish);
  // See Camera::newest() and Camera::next().
  std::shared_ptr<const Frame> newest(std::chrono::milliseconds patience) const;
  std::shared_ptr<const Frame> next(const std::shared_ptr<const Frame>& known,
                                    std::chrono::milliseconds patience) const;

 private:
  friend class Cameras;
  explicit CameraReader(std::shared_ptr<Cameras> cameras);

  const std::shared_ptr<Cameras> fCameras;
};

}  // namespace robot

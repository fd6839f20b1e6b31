// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/cameras.h"

namespace robot {

Cameras::Cameras(std::array<std::unique_ptr<CameraSource>, kCameras> sources, int model)
    : fModel(model) {
  for (std::size_t i = 0; i < sources.size(); ++i)
    fCameras[i] = std::make_unique<Camera>(static_cast<int>(i), std::move(sources[i]), model);
}

int Cameras::active() const {
  const zu::MutexLock guard(fMutex);
  return fActive;
}

void Cameras::setActive(int active) {
  const zu::MutexLock guard(fMutex);
  fActive = active;
  tellWishes();
}

std::unique_ptr<CameraReader> Cameras::read(const Wish& wish) {
  std::unique_ptr<CameraReader> reader(new CameraReader(shared_from_this()));
  const zu::MutexLock guard(fMutex);
  fReaders[reader.get()] = wish;
  tellWishes();
  return reader;
}

void Cameras::tellWishes() {
  std::vector<Wish> wishes;
  for (const auto& [reader, wish] : fReaders) wishes.push_back(wish);
  for (int i = 0; i < kCameras; ++i)
    camera(i).setWishes(i == fActive ? wishes : std::vector<Wish>());
}

CameraReader::CameraReader(std::shared_ptr<Cameras> cameras) : fCameras(std::move(cameras)) {
}

CameraReader::~CameraReader() {
  const zu::MutexLock guard(fCameras->fMutex);
  fCameras->fReaders.erase(this);
  fCameras->tellWishes();
}

Wish CameraReader::wish() const {
  const zu::MutexLock guard(fCameras->fMutex);
  return fCameras->fReaders.at(this);
}

void CameraReader::setWish(const Wish& wish) {
  const zu::MutexLock guard(fCameras->fMutex);
  fCameras->fReaders[this] = wish;
  fCameras->tellWishes();
}

std::shared_ptr<const Frame> CameraReader::newest(std::chrono::milliseconds patience) const {
  return fCameras->camera(fCameras->active()).newest(patience);
}

std::shared_ptr<const Frame> CameraReader::next(const std::shared_ptr<const Frame>& known,
                                                std::chrono::milliseconds patience) const {
  return fCameras->camera(fCameras->active()).next(known, patience);
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/model.h"

#include <boost/make_shared.hpp>
#include <cstring>
#include <new>

#include "viewer/core/videorecordermodel.h"

namespace {

// Rows of frames begin on cache lines, so that no vector is written across two.
constexpr std::align_val_t kFrameAlignment{64};
constexpr int kGreyBeforeTheFirstFrame = 150;

struct ResolutionName {
  int index;
  const char* name;
};
constexpr ResolutionName kResolutions[] = {
    {3, "1280 * 960"}, {2, "640 * 480"}, {1, "320 * 240"}, {0, "160 * 120"}};

unsigned char* newFrame() {
  auto* frame = static_cast<unsigned char*>(::operator new[](Model::kFrameBytes, kFrameAlignment));
  std::memset(frame, kGreyBeforeTheFirstFrame, Model::kFrameBytes);
  return frame;
}

}  // namespace

Model::Model()
    : fObjectsMutex(Ky::KyMutex::createKyMutex()),
      fWidth(160),
      fHeight(120),
      fTimestamp(0),
      fResolution(fDefaultResolution),
      fColorSpace(fDefaultColorSpace),
      fFps(fDefaultFps),
      fCamera(fDefaultCamera),
      fAngles{},
      fImageMutex(Ky::KyMutexRW::createKyMutexRW()),
      fParamMutex(Ky::KyMutexRW::createKyMutexRW()),
      fImageData(newFrame()),
      fVideoRecorder(boost::make_shared<VideoRecorderModel>()) {
}

Model::~Model() {
  ::operator delete[](fImageData, kFrameAlignment);
}

std::string Model::resolutionToString(int index) {
  for (const auto& resolution : kResolutions)
    if (resolution.index == index) return resolution.name;
  return "ERROR";
}

int Model::resolutionFromString(const std::string& name) {
  for (const auto& resolution : kResolutions)
    if (name == resolution.name) return resolution.index;
  return -1;
}

void Model::setPictureProblem(const std::string& problem) {
  const zu::MutexLock guard(fProblemMutex);
  fPictureProblem = problem;
}

std::string Model::pictureProblem() const {
  const zu::MutexLock guard(fProblemMutex);
  return fPictureProblem;
}

void Model::addObjectWatch(const std::string& key) {
  const Ky::KyCriticalSection guard(fObjectsMutex);
  const auto [entry, isNew] = fObjects.try_emplace(key);
  if (isNew) entry->second.fMutex = Ky::KyMutex::createKyMutex();
}

void Model::removeObjectWatch(const std::string& key) {
  const Ky::KyCriticalSection guard(fObjectsMutex);
  fObjects.erase(key);
}

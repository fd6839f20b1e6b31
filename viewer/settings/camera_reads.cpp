// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/camera_reads.h"

#include <vector>

#include "ky/video_device_proxy.h"
#include "viewer/core/module.h"
#include "zu/log.h"

using enum Ky::CameraParameter;

namespace {

const std::string kDevice = "KyVideoDevice";

const std::vector<int> kOfEveryModel = {
    kAutoExposition, kExposure, kAutoWhiteBalance, kBrightness,    kContrast,
    kSaturation,     kHue,      kVerticalFlip,     kHorizontalFlip};
const std::vector<int> kOfModelOne = {kGain, kAutoGain, kBlueChroma, kRedChroma};
const std::vector<int> kOfModelTwo = {kGain, kWhiteBalance};

void add(Ky::KyReads& reads, const std::vector<int>& parameters, int camera) {
  for (const int parameter : parameters)
    reads.push_back({kDevice, "getParam", {parameter, camera}});
}

Ky::KyReads readsToFollow(int camera, int cameraModel) {
  Ky::KyReads reads;
  add(reads, {kColorSpace}, camera);
  add(reads, kOfEveryModel, camera);
  if (cameraModel == 1) add(reads, kOfModelOne, camera);
  if (cameraModel == 2) add(reads, kOfModelTwo, camera);
  return reads;
}

// setParam(id, value, camera) changes what getParam(id, camera) answers.
Ky::KyRead changedBy(const Ky::KyValue::Array& written) {
  if (written.size() != 3) return {};
  return {kDevice, "getParam", {written[0], written[2]}};
}

}  // namespace

Ky::KyReads readsOfNewPanel(int camera) {
  Ky::KyReads reads = {{kDevice, "getCameraModelID"}};
  add(reads, kOfEveryModel, camera);
  add(reads, kOfModelOne, camera);
  add(reads, {kExposureCorrection}, camera);
  add(reads, kOfModelTwo, camera);
  return reads;
}

CameraFollowing::CameraFollowing(const Module& module, int cameraModel)
    : fRobot(module.getParentBroker()->address().toString()),
      fAhead(module.getParentBroker(), readsToFollow(module.model()->fCamera, cameraModel),
             {{kDevice, "setParam", changedBy}}) {
}

CameraFollowing::~CameraFollowing() {
  const zu::log::Subject robot(fRobot);
  for (const Ky::KyError& error : fAhead.finish())
    zu::log::error("periscope", "setCameraParam") << error.what();
}

// SPDX-License-Identifier: Apache-2.0
// The camera's parameters: the robot holds them all, the model mirrors those that the viewer's own
// work depends on.
#include "ky/video_device_proxy.h"
#include "viewer/core/module.h"
#include "zu/log.h"

using enum Ky::CameraParameter;

namespace {

constexpr int kBlackAndWhite = 0;
constexpr int kColour = 9;

void logFailure(const char* method, const Ky::KyError& error) {
  zu::log::error("periscope", method) << error.what();
}

}  // namespace

bool Module::setDefaultParameters() {
  if (!fVideoDevice) return false;
  const zu::log::Subject robot(fRobot);
  try {
    return fVideoDevice->setFrameRate(fSubscriberName, Model::fDefaultFps) &&
           fVideoDevice->setResolution(fSubscriberName, Model::fDefaultResolution) &&
           fVideoDevice->setColorSpace(fSubscriberName, Model::fDefaultColorSpace);
  } catch (const Ky::KyError& error) {
    logFailure("setDefaultParameters", error);
    return false;
  }
}

bool Module::setCurrentParameters() {
  if (!fVideoDevice) return false;
  const zu::log::Subject robot(fRobot);
  try {
    const Ky::KyCriticalSectionRead parameters(fModel->fParamMutex);
    return fVideoDevice->setFrameRate(fSubscriberName, fModel->fFps) &&
           fVideoDevice->setResolution(fSubscriberName, fModel->fResolution) &&
           fVideoDevice->setColorSpace(fSubscriberName, fModel->fColorSpace) &&
           fVideoDevice->setActiveCamera(fModel->fCamera);
  } catch (const Ky::KyError& error) {
    logFailure("setCurrentParameters", error);
    return false;
  }
}

int Module::getCameraModelID() const {
  if (!fVideoDevice) return 0;
  const zu::log::Subject robot(fRobot);
  try {
    return fVideoDevice->getCameraModelID();
  } catch (const Ky::KyError& error) {
    logFailure("getCameraModelID", error);
    return 0;
  }
}

bool Module::getCameraParam(int id, int& value) const {
  if (!fVideoDevice) return false;
  const zu::log::Subject robot(fRobot);
  try {
    const auto mirrored = [&](const auto& setting) {
      const Ky::KyCriticalSectionRead parameters(fModel->fParamMutex);
      value = setting;
      return true;
    };
    switch (id) {
      case kFrameRate:
        return mirrored(fModel->fFps);
      case kResolution:
        return mirrored(fModel->fResolution);
      case kActiveCamera:
        return mirrored(fModel->fCamera);
      default:
        value = fVideoDevice->getParam(id, fModel->fCamera);
        return true;
    }
  } catch (const Ky::KyError& error) {
    logFailure("getCameraParam", error);
    return false;
  }
}

bool Module::setCameraParam(int id, int value) const {
  if (!fVideoDevice) return false;
  const zu::log::Subject robot(fRobot);
  try {
    switch (id) {
      // The viewer's belief comes first and stays, also when the robot refuses.
      case kFrameRate: {
        fModel->fFps = value;
        const Ky::KyCriticalSectionRead parameters(fModel->fParamMutex);
        return fVideoDevice->setFrameRate(fSubscriberName, fModel->fFps);
      }
      case kResolution: {
        fModel->fResolution = value;
        const Ky::KyCriticalSectionRead parameters(fModel->fParamMutex);
        return fVideoDevice->setResolution(fSubscriberName, fModel->fResolution);
      }
      case kColorSpace: {
        fModel->fColorSpace = value == 0 ? kBlackAndWhite : kColour;
        const Ky::KyCriticalSectionRead parameters(fModel->fParamMutex);
        return fVideoDevice->setColorSpace(fSubscriberName, fModel->fColorSpace);
      }
      // A switch of the camera counts only once the robot confirms it.
      case kActiveCamera: {
        const Ky::KyCriticalSectionRead parameters(fModel->fParamMutex);
        fVideoDevice->setParam(kActiveCamera, value);
        if (fVideoDevice->getParam(kActiveCamera) != value) return false;
        fModel->fCamera = static_cast<std::uint8_t>(value);
        return true;
      }
      default:
        fVideoDevice->setParam(id, value, fModel->fCamera);
        return true;
    }
  } catch (const Ky::KyError& error) {
    logFailure("setCameraParam", error);
    return false;
  }
}

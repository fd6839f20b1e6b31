// SPDX-License-Identifier: Apache-2.0
// The three services that take photos and films: each a handful of calls.
#include "ky/photo_capture_proxy.h"
#include "ky/video_recorder_proxy.h"
#include "ky/vision_toolbox_proxy.h"

namespace Ky {

KyPhotoCaptureProxy::KyPhotoCaptureProxy(boost::shared_ptr<KyBroker> broker)
    : fProxy(broker->getProxy("KyPhotoCapture")) {
}

KyValue KyPhotoCaptureProxy::takePicture(const std::string& folder, const std::string& fileName) {
  return fProxy->call<KyValue>("takePicture", folder, fileName);
}

KyVideoRecorderProxy::KyVideoRecorderProxy(boost::shared_ptr<KyBroker> broker)
    : fProxy(broker->getProxy("KyVideoRecorder")) {
}

KyValue KyVideoRecorderProxy::startRecording(const std::string& folder,
                                             const std::string& fileName) {
  return fProxy->call<KyValue>("startRecording", folder, fileName);
}

KyValue KyVideoRecorderProxy::stopRecording() {
  return fProxy->call<KyValue>("stopRecording");
}

KyValue KyVideoRecorderProxy::getState() {
  return fProxy->call<KyValue>("getState");
}

bool KyVideoRecorderProxy::takeOver(const std::string& path) {
  return fProxy->call<bool>("takeOver", path);
}

KyVisionToolboxProxy::KyVisionToolboxProxy(boost::shared_ptr<KyBroker> broker)
    : fProxy(broker->getProxy("KyVisionToolbox")) {
}

void KyVisionToolboxProxy::takePicture() {
  fProxy->callVoid("takePicture");
}

void KyVisionToolboxProxy::startVideoRecord(const std::string& name) {
  fProxy->callVoid("startVideoRecord", name);
}

KyValue KyVisionToolboxProxy::stopVideoRecord() {
  return fProxy->call<KyValue>("stopVideoRecord");
}

}  // namespace Ky

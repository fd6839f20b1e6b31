// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/vision_toolbox.h"

#include "robot/recording/photo.h"

namespace robot {

VisionToolbox::VisionToolbox(boost::shared_ptr<Ky::KyBroker> broker,
                             std::shared_ptr<Cameras> cameras, HomeFolder home,
                             std::shared_ptr<Recorder> recorder)
    : KyModule(std::move(broker), "KyVisionToolbox"),
      fCameras(std::move(cameras)),
      fHome(std::move(home)),
      fRecorder(std::move(recorder)) {
  setModuleDescription("Photos and films in " + kCameraFolder +
                       "; KyPhotoCapture and KyVideoRecorder can do more.");
  functionName("takePicture", getName(), "Stores a photo, photo.jpg or the next free number.");
  setReturn("path", "of the photo");
  bindMethod(&VisionToolbox::takePicture);

  functionName("startVideoRecord", getName(), "Begins a film.");
  addParam("name", "of the file, without .avi");
  setReturn("path", "of the film");
  bindMethod(&VisionToolbox::startVideoRecord);

  functionName("stopVideoRecord", getName(), "Ends the film.");
  setReturn("film", "[number of frames, path]");
  bindMethod(&VisionToolbox::stopVideoRecord);
}

std::string VisionToolbox::takePicture() {
  return takePhoto(*fCameras, fHome, kCameraFolder, "photo");
}

std::string VisionToolbox::startVideoRecord(const Ky::KyPeer& caller, const std::string& name) {
  return fRecorder->start(caller, kCameraFolder, name);
}

Ky::KyValue VisionToolbox::stopVideoRecord() {
  return fRecorder->stop().toValue();
}

}  // namespace robot

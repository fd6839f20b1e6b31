// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/photo_capture.h"

#include "robot/recording/photo.h"

namespace robot {

PhotoCapture::PhotoCapture(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                           HomeFolder home)
    : KyModule(std::move(broker), "KyPhotoCapture"),
      fCameras(std::move(cameras)),
      fHome(std::move(home)) {
  setModuleDescription("Takes photos of what the active camera sees.");
  functionName("takePicture", getName(),
               "Stores a JPEG in the camera's full size. No file is overwritten: a second one of "
               "its name gets a number.");
  addParam("folder", "in the robot's home, such as /home/tam/recordings/cameras/; made if missing");
  addParam("fileName", "without .jpg");
  setReturn("path", "of the photo");
  bindMethod(&PhotoCapture::takePicture);
}

std::string PhotoCapture::takePicture(const std::string& folder, const std::string& fileName) {
  return takePhoto(*fCameras, fHome, folder, fileName);
}

}  // namespace robot

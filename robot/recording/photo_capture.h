// SPDX-License-Identifier: Apache-2.0
// The module "KyPhotoCapture".
#pragma once

#include <memory>
#include <string>

#include "ky/module.h"
#include "robot/camera/cameras.h"
#include "robot/recording/home_folder.h"

namespace robot {

// The methods run on the module's call thread.
class PhotoCapture : public Ky::KyModule {
 public:
  PhotoCapture(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
               HomeFolder home);

  std::string takePicture(const std::string& folder, const std::string& fileName);

 private:
  const std::shared_ptr<Cameras> fCameras;
  const HomeFolder fHome;
};

}  // namespace robot

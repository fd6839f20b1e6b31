// SPDX-License-Identifier: Apache-2.0
// KyLogoDetection and KyVisionRecognition: extractors that are taught by a folder of pictures.
#pragma once

#include "robot/extractors/extractor.h"
#include "robot/extractors/pictures/picture_detector.h"

namespace robot {

// The methods run on the module's call thread.
class PictureRecognition : public Extractor {
 public:
  PictureRecognition(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                     const std::string& name, const std::string& what,
                     std::unique_ptr<PictureDetector> detector);

  // Returns at once; the folder is looked through at the next look. Throws KyError when there is no
  // such folder.
  void load();

 private:
  PictureRecognition(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                     const std::string& name, const std::string& what,
                     std::unique_ptr<PictureDetector>& detector, PictureDetector& pictures);

  PictureDetector& fPictures;  // the base owns it
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/picture_recognition.h"

namespace robot {

PictureRecognition::PictureRecognition(boost::shared_ptr<Ky::KyBroker> broker,
                                       std::shared_ptr<Cameras> cameras, const std::string& name,
                                       const std::string& what,
                                       std::unique_ptr<PictureDetector> detector)
    : PictureRecognition(std::move(broker), std::move(cameras), name, what, detector, *detector) {
}

PictureRecognition::PictureRecognition(boost::shared_ptr<Ky::KyBroker> broker,
                                       std::shared_ptr<Cameras> cameras, const std::string& name,
                                       const std::string& what,
                                       std::unique_ptr<PictureDetector>& detector,
                                       PictureDetector& pictures)
    : Extractor(std::move(broker), std::move(cameras), name, what, std::move(detector)),
      fPictures(pictures) {
  functionName("load", getName(),
               "Loads the folder's pictures anew; what has not changed is kept. Returns at once.");
  bindMethod(&PictureRecognition::load);
}

void PictureRecognition::load() {
  if (!std::filesystem::is_directory(fPictures.folder()))
    throw Ky::KyError("there is no folder \"" + fPictures.folder().string() +
                      "\"; make it and put pictures into it");
  fPictures.reload();
}

}  // namespace robot

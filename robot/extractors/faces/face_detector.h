// SPDX-License-Identifier: Apache-2.0
// Finds faces that look at the camera.
#pragma once

#include "robot/extractors/detector.h"
#include "robot/extractors/faces/face_finder.h"

namespace robot {

// "FaceDetected": [[s, us], [[[0, alpha, beta, sizeX, sizeY], [support]], .., [number of faces]]]
// with angles in radians. The sizes are signed as the field of view is: negative. Support: the
// neighbouring places at which the face was seen too. Looks at 640 x 480 pixels.
class FaceDetector : public Detector {
 public:
  // Throws KyError that says what to install.
  explicit FaceDetector(const std::filesystem::path& cascades = kCascades) : fFinder(cascades) {}

  std::vector<std::string> keys() const override { return {"FaceDetected"}; }
  std::vector<Finding> detect(const Frame& frame) override;

 private:
  FaceFinder fFinder;
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// Finds landmarks and tells their numbers.
#pragma once

#include "robot/extractors/detector.h"
#include "robot/extractors/landmarks/tag_finder.h"

namespace robot {

// "LandmarkDetected": [[s, us], [[[0, alpha, beta, sizeX, sizeY, heading], [number]], ..]], all
// angles in radians. The sizes are those of the upright box around the black square, signed as the
// field of view is: negative. Heading: of the square's upper edge, counter-clockwise from the
// picture's right, -pi to pi.
class LandmarkDetector : public Detector {
 public:
  std::vector<std::string> keys() const override { return {"LandmarkDetected"}; }
  std::vector<Finding> detect(const Frame& frame) override;

 private:
  TagFinder fFinder;
};

}  // namespace robot

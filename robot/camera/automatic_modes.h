// SPDX-License-Identifier: Apache-2.0
// Auto exposition, auto gain and auto white balance where a camera has none in hardware.
#pragma once

#include <opencv2/core.hpp>

#include "robot/camera/camera_parameters.h"

namespace robot {

bool isAutomatic(const CameraParameters& parameters);

// The mean of a BGR picture of its source, quickly.
cv::Scalar meanColour(const cv::Mat& bgr);

// One step, a picture's worth, of every mode that is on: towards a picture of medium light, which
// exposure correction makes more or less, and towards one without a tint. Moves exposure, gain, red
// and blue chroma or white balance; after some twenty steps with the same picture they stay. Auto
// exposition of the second model moves the gain too. Exposure comes before gain, which is noisy.
void adapt(CameraParameters& parameters, const cv::Scalar& mean);

}  // namespace robot

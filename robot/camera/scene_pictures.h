// SPDX-License-Identifier: Apache-2.0
// The pictures that hang in the generated scene, for the robot to recognise.
#pragma once

#include <opencv2/core.hpp>

namespace robot {

// Sailing boats before a small town, BGR.
cv::Mat paintHarbour();
// The eye of a periscope, BGR.
cv::Mat paintEmblem();

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// What stands still in the generated scenes.
#pragma once

#include <opencv2/core.hpp>

namespace robot {

cv::Mat paintCountry(cv::Size size);
cv::Mat paintTown(cv::Size size);

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// A folder in which the robot finds what it is taught.
#pragma once

#include <filesystem>
#include <opencv2/core.hpp>
#include <string>

namespace robot {

// Makes the folder when there is none, with a first picture in it so that there is something to
// recognise. A folder that exists is left as it is. Throws KyError when it can't be made.
void makeTaughtFolder(const std::filesystem::path& folder, const std::string& label,
                      const cv::Mat& picture);

}  // namespace robot

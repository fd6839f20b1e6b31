// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/taught_folder.h"

#include <opencv2/imgcodecs.hpp>

#include "ky/error.h"

namespace robot {

void makeTaughtFolder(const std::filesystem::path& folder, const std::string& label,
                      const cv::Mat& picture) {
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return;
  std::filesystem::create_directories(folder, error);
  if (error)
    throw Ky::KyError("the folder \"" + folder.string() + "\" can't be made: " + error.message());
  const std::string file = (folder / (label + ".png")).string();
  bool written = false;
  try {
    written = cv::imwrite(file, picture);
  } catch (const cv::Exception&) {
  }
  if (!written) throw Ky::KyError("\"" + file + "\" can't be written");
}

}  // namespace robot

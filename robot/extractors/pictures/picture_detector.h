// SPDX-License-Identifier: Apache-2.0
// Recognises the pictures of a folder.
#pragma once

#include <atomic>
#include <functional>

#include "robot/extractors/detector.h"
#include "robot/extractors/pictures/picture_finder.h"
#include "robot/extractors/pictures/picture_folder.h"

namespace robot {

// What stands in the robot's memory for a picture that was found in one of `size`.
using PictureEntry = Ky::KyValue (*)(const TaughtPicture& picture, const FoundPicture& found,
                                     cv::Size size);

// [[0, alpha, beta, sizeX, sizeY], [label, matched features]]: the upright box around the logo. Its
// sizes are signed as the field of view is: negative.
Ky::KyValue logoEntry(const TaughtPicture& picture, const FoundPicture& found, cv::Size size);
// [[label], matched features, their share of the picture's, [[alpha, beta], ..]]: the picture's
// corners, from its upper left one around, with the clock when it stands upright.
Ky::KyValue pictureEntry(const TaughtPicture& picture, const FoundPicture& found, cv::Size size);

// Looks at 640 x 480 pixels. Loads the folder at the first look.
class PictureDetector : public Detector {
 public:
  PictureDetector(std::string key, PictureEntry entry, std::filesystem::path folder,
                  const std::string& who);

  // The folder shall be looked through anew, at the next look. Thread-safe.
  void reload() { fReload = true; }
  const std::filesystem::path& folder() const { return fFolder; }

  std::vector<std::string> keys() const override { return {fKey}; }
  std::vector<Finding> detect(const Frame& frame) override;

 private:
  const std::string fKey;
  const PictureEntry fEntry;
  const std::filesystem::path fFolder;
  PictureFolder fPictures;
  std::atomic<bool> fReload{true};
};

}  // namespace robot

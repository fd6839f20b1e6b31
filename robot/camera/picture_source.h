// SPDX-License-Identifier: Apache-2.0
// A slide show: a folder of pictures, in the order of their names, over and over; or one picture.
#pragma once

#include <filesystem>
#include <vector>

#include "robot/camera/source.h"

namespace robot {

// Each picture stays for one second, during which the camera goes on taking pictures of it. Files
// that can't be read are skipped with a warning.
class PictureSource : public CameraSource {
 public:
  static constexpr std::int64_t kStay = 1000000;  // microseconds

  // `path` is a folder or a picture.
  explicit PictureSource(std::string path);

  std::string name() const override { return fPath; }
  void open() override;
  SourcePicture next() override;
  std::chrono::microseconds period(int fps) const override;

 private:
  void advance();

  std::string fPath;
  std::vector<std::filesystem::path> fFiles;
  std::size_t fNext = 0;
  cv::Mat fPicture;
  std::int64_t fSince = 0;
};

}  // namespace robot

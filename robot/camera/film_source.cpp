// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/film_source.h"

#include <filesystem>

#include "ky/error.h"
#include "zu/os.h"

namespace robot {

FilmSource::FilmSource(std::string path) : fPath(std::move(path)) {
}

void FilmSource::open() {
  std::error_code ignored;
  if (!std::filesystem::exists(fPath, ignored)) throw Ky::KyError("\"" + fPath + "\" is gone");
  if (!fCapture.open(fPath, cv::CAP_FFMPEG) || !fCapture.grab())
    throw Ky::KyError("\"" + fPath +
                      "\" is no film that can be read; is it complete, and may it be read?");
  fCapture.open(fPath, cv::CAP_FFMPEG);  // from its first picture again
  const double rate = fCapture.get(cv::CAP_PROP_FPS);
  fRate = rate >= 0.1 && rate <= 120 ? rate : 25;
}

SourcePicture FilmSource::next() {
  cv::Mat picture;
  if (!fCapture.read(picture) || picture.empty()) {
    open();
    if (!fCapture.read(picture) || picture.empty())
      throw Ky::KyError("\"" + fPath + "\" can't be read any more");
  }
  // The capture may hand out the same memory the next time.
  return {picture.clone(), zu::os::nowMicroseconds()};
}

std::chrono::microseconds FilmSource::period(int) const {
  return std::chrono::microseconds(static_cast<std::int64_t>(1e6 / fRate));
}

}  // namespace robot

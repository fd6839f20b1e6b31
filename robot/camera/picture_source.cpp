// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/picture_source.h"

#include <algorithm>
#include <opencv2/imgcodecs.hpp>

#include "ky/error.h"
#include "zu/log.h"
#include "zu/os.h"

namespace robot {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(path, error)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(path, error))
    if (entry.is_regular_file(error) && entry.path().filename().string().front() != '.')
      files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

cv::Mat readPicture(const fs::path& file) {
  try {
    return cv::imread(file.string(), cv::IMREAD_COLOR);
  } catch (const cv::Exception&) {
    return {};  // larger than OpenCV dares, for instance
  }
}

}  // namespace

PictureSource::PictureSource(std::string path) : fPath(std::move(path)) {
}

void PictureSource::open() {
  fFiles = filesOf(fPath);
  fNext = 0;
  fPicture.release();
  advance();
}

void PictureSource::advance() {
  while (!fFiles.empty()) {
    fNext %= fFiles.size();
    fPicture = readPicture(fFiles[fNext]);
    if (!fPicture.empty()) {
      ++fNext;
      return;
    }
    zu::log::warning("kyrobot", "camera")
        << "\"" << fFiles[fNext].string() << "\" is no picture that can be read; skipped";
    fFiles.erase(fFiles.begin() + static_cast<std::ptrdiff_t>(fNext));
  }
  throw Ky::KyError("there is no readable picture in \"" + fPath + "\"");
}

SourcePicture PictureSource::next() {
  const std::int64_t now = zu::os::nowMicroseconds();
  if (fSince == 0) fSince = now;
  if (now - fSince >= kStay) {
    fSince = now;
    if (fFiles.size() != 1) advance();
  }
  return {fPicture, now};
}

std::chrono::microseconds PictureSource::period(int fps) const {
  return periodForReaders(fps);
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/photo.h"

#include <cerrno>
#include <cstring>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "ky/error.h"

namespace robot {
namespace {

constexpr std::chrono::milliseconds kFirstFrame{500};
constexpr int kQuality = 95;

std::vector<unsigned char> jpegOf(const Frame& frame) {
  std::vector<unsigned char> bytes;
  cv::imencode(".jpg", frame.picture(), bytes, {cv::IMWRITE_JPEG_QUALITY, kQuality});
  return bytes;
}

void writeAll(const NewFile& file, const std::vector<unsigned char>& bytes) {
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t count = write(file.file.get(), bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      const std::string reason = std::strerror(errno);
      file.discard();
      throw Ky::KyError("\"" + file.path + "\" can't be written: " + reason);
    }
    written += static_cast<std::size_t>(count);
  }
}

}  // namespace

std::string takePhoto(Cameras& cameras, const HomeFolder& home, const std::string& folder,
                      const std::string& name) {
  const auto reader = cameras.read({{0, kGrey}, kMaxFps});
  const auto bytes = jpegOf(*reader->newest(kFirstFrame));
  const NewFile file = home.create(folder, name, ".jpg");
  writeAll(file, bytes);
  return file.path;
}

}  // namespace robot

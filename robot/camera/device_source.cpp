// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/device_source.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "ky/error.h"
#include "zu/os.h"

namespace robot {

DeviceSource::DeviceSource(std::string path) : fPath(std::move(path)), fControls(fPath) {
}

void DeviceSource::open() {
  fCapture.release();
  if (access(fPath.c_str(), R_OK | W_OK) != 0)
    throw Ky::KyError("\"" + fPath + "\" can't be opened: " + std::strerror(errno));
  if (!fCapture.open(fPath, cv::CAP_V4L2))
    throw Ky::KyError("\"" + fPath +
                      "\" is no camera that can be opened; does another program use it?");
  fCapture.set(cv::CAP_PROP_FRAME_WIDTH, 1280);
  fCapture.set(cv::CAP_PROP_FRAME_HEIGHT, 960);
  fCapture.set(cv::CAP_PROP_BUFFERSIZE, 1);
  fControls.restore();
}

SourcePicture DeviceSource::next() {
  if (!fCapture.isOpened()) open();
  try {
    std::vector<int> ready;
    const std::int64_t second = 1000000000;
    cv::Mat picture;
    if (cv::VideoCapture::waitAny({fCapture}, ready, second)) fCapture.read(picture);
    if (!picture.empty()) return {picture.clone(), zu::os::nowMicroseconds()};
  } catch (const cv::Exception&) {
    // a device that was pulled out
  }
  fCapture.release();
  throw Ky::KyError("\"" + fPath + "\" delivers no pictures any more");
}

std::chrono::microseconds DeviceSource::period(int) const {
  return std::chrono::microseconds(0);
}

void DeviceSource::rest() {
  fCapture.release();
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/frame.h"

#include <opencv2/imgproc.hpp>

#include "robot/camera/pixels.h"

namespace robot {
namespace {

cv::Mat resized(const cv::Mat& picture, cv::Size size) {
  cv::Mat result;
  const bool smaller = size.width < picture.cols;
  cv::resize(picture, result, size, 0, 0, smaller ? cv::INTER_AREA : cv::INTER_LINEAR);
  return result;
}

}  // namespace

Frame::Frame(cv::Mat picture, std::int64_t time, int camera, const PictureControls& controls)
    : fTaken(std::move(picture)), fTime(time), fCamera(camera), fControls(controls) {
}

const cv::Mat& Frame::picture() const {
  std::call_once(fPicture.flag, [&] { fPicture.value = fControls.apply(fTaken); });
  return fPicture.value;
}

const cv::Mat& Frame::picture(int resolution) const {
  if (fTaken.size() == sizeOf(resolution)) return picture();
  auto& once = fPictures.at(static_cast<std::size_t>(resolution));
  std::call_once(once.flag,
                 [&] { once.value = fControls.apply(resized(fTaken, sizeOf(resolution))); });
  return once.value;
}

const Ky::KyBinary& Frame::pixels(const ImageFormat& format) const {
  const int index = format.resolution * 3 + layersOf(format.colorSpace) - 1;
  auto& once = fPixels.at(static_cast<std::size_t>(index));
  std::call_once(once.flag,
                 [&] { once.value = pixelsOf(picture(format.resolution), format.colorSpace); });
  return once.value;
}

}  // namespace robot

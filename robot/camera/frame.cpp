#include "robot/camera/frame.h"

#include <opencv2/imgproc.hpp>

#include "robot/camera/pixels.h"

namespace robot {
namespace {

cv::Mat resized(const cv::Mat& picture, cv::Size size) {
  if (picture.size() == size) return picture;
  cv::Mat result;
  const bool smaller = size.width < picture.cols;
  cv::resize(picture, result, size, 0, 0, smaller ? cv::INTER_AREA : cv::INTER_LINEAR);
  return result;
}

}  // namespace

Frame::Frame(cv::Mat picture, std::int64_t time, int camera)
    : fPicture(std::move(picture)), fTime(time), fCamera(camera) {
}

const cv::Mat& Frame::picture(int resolution) const {
  auto& once = fPictures.at(static_cast<std::size_t>(resolution));
  std::call_once(once.flag, [&] { once.value = resized(fPicture, sizeOf(resolution)); });
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

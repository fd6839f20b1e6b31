// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/pixels.h"

#include <algorithm>
#include <cstdint>
#include <opencv2/imgproc.hpp>

#include "ky/error.h"
#include "robot/camera/image_format.h"
#include "robot/camera/row_conversion.h"

namespace robot {
namespace {

using Byte = std::uint8_t;

cv::Mat threeChannels(const cv::Mat& picture) {
  if (picture.type() == CV_8UC3) return picture;
  cv::Mat bgr;
  if (picture.type() == CV_8UC1)
    cv::cvtColor(picture, bgr, cv::COLOR_GRAY2BGR);
  else if (picture.type() == CV_8UC4)
    cv::cvtColor(picture, bgr, cv::COLOR_BGRA2BGR);
  else
    throw Ky::KyError("pictures of the kind " + cv::typeToString(picture.type()) +
                      " can't be used; 8-bit grey or colour is needed");
  return bgr;
}

}  // namespace

Ky::KyBinary pixelsOf(const cv::Mat& bgr, int colorSpace) {
  const std::size_t stride = static_cast<std::size_t>(bgr.cols) * layersOf(colorSpace);
  const std::size_t size = stride * bgr.rows;
  const std::shared_ptr<Byte[]> pixels(new Byte[size]);  // not cleared first
  const auto convert = colorSpace == kGrey     ? rowToGrey
                       : colorSpace == kYuv422 ? rowToYuv422
                                               : rowToYuv444;
  for (int row = 0; row < bgr.rows; ++row)
    convert(bgr.ptr(row), bgr.cols, pixels.get() + row * stride);
  return {pixels, pixels.get(), size};
}

cv::Mat fitToCanvas(const cv::Mat& picture) {
  const cv::Mat bgr = threeChannels(picture);
  const cv::Size largest = sizeOf(kLargestResolution);
  cv::Size canvas(std::max(bgr.cols, (bgr.rows * 4 + 2) / 3), 0);
  canvas.height = std::max(bgr.rows, (canvas.width * 3 + 2) / 4);
  if (canvas == bgr.size() && canvas.width <= largest.width) return bgr;

  double scale = 1;
  if (canvas.width > largest.width) {
    scale = static_cast<double>(largest.width) / canvas.width;
    canvas = largest;
  }
  const cv::Size inner(std::clamp(cvRound(bgr.cols * scale), 1, canvas.width),
                       std::clamp(cvRound(bgr.rows * scale), 1, canvas.height));
  cv::Mat result(canvas, CV_8UC3, cv::Scalar::all(0));
  const cv::Point corner((canvas.width - inner.width) / 2, (canvas.height - inner.height) / 2);
  cv::Mat middle = result(cv::Rect(corner, inner));
  cv::resize(bgr, middle, inner, 0, 0, cv::INTER_AREA);
  return result;
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/taught_picture.h"

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "ky/error.h"

namespace robot {
namespace {

cv::Mat readGrey(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(file, error);
  if (!error && bytes > TaughtPicture::kLargestFile)
    throw Ky::KyError("\"" + file.string() + "\" is larger than 64 MB; make it smaller");
  cv::Mat picture;
  try {
    picture = cv::imread(file.string(), cv::IMREAD_GRAYSCALE);
  } catch (const std::exception&) {  // more pixels than OpenCV dares, or than there is memory for
  }
  if (picture.empty())
    throw Ky::KyError("\"" + file.string() + "\" is no picture that can be read");
  return picture;
}

cv::Mat shrunk(const cv::Mat& picture) {
  const double factor =
      static_cast<double>(TaughtPicture::kLargestSide) / std::max(picture.cols, picture.rows);
  if (factor >= 1) return picture;
  // A picture may be a thousand times as wide as it is high.
  const cv::Size size(std::max(1, cvRound(picture.cols * factor)),
                      std::max(1, cvRound(picture.rows * factor)));
  cv::Mat result;
  cv::resize(picture, result, size, 0, 0, cv::INTER_AREA);
  return result;
}

}  // namespace

TaughtPicture readTaughtPicture(const std::filesystem::path& file) {
  const cv::Mat grey = shrunk(readGrey(file));
  TaughtPicture picture{file.stem().string(), grey.size(),
                        featuresOf(grey, TaughtPicture::kMostFeatures)};
  if (picture.features.points.size() < TaughtPicture::kFewestFeatures)
    throw Ky::KyError("\"" + file.string() + "\" has too little detail to be recognised");
  return picture;
}

}  // namespace robot

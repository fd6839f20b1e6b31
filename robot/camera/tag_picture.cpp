// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/tag_picture.h"

#include <apriltag/apriltag.h>
#include <apriltag/tag36h11.h>

#include <memory>
#include <opencv2/imgproc.hpp>

#include "ky/error.h"

namespace robot {

cv::Mat tagPicture(int number, int cell) {
  if (number < 0 || number >= kTagNumbers)
    throw Ky::KyError("there is no landmark " + std::to_string(number) +
                      "; their numbers are 0 to " + std::to_string(kTagNumbers - 1));
  const std::unique_ptr<apriltag_family_t, void (*)(apriltag_family_t*)> family(tag36h11_create(),
                                                                                tag36h11_destroy);
  const std::unique_ptr<image_u8_t, void (*)(image_u8_t*)> image(
      apriltag_to_image(family.get(), number), image_u8_destroy);
  const cv::Mat cells(image->height, image->width, CV_8U, image->buf,
                      static_cast<std::size_t>(image->stride));
  cv::Mat picture;
  cv::resize(cells, picture, {kTagCells * cell, kTagCells * cell}, 0, 0, cv::INTER_NEAREST);
  return picture;
}

}  // namespace robot

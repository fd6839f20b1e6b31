// SPDX-License-Identifier: Apache-2.0
#include "robot/services/image_record.h"

#include <utility>

#include "robot/camera/field_of_view.h"

namespace robot {

Ky::KyValue::Array imageRecord(const Frame& frame, const ImageFormat& format) {
  return imageRecord(format, frame.time(), frame.pixels(format), frame.camera());
}

Ky::KyValue::Array imageRecord(const ImageFormat& format, std::int64_t time, Ky::KyBinary pixels,
                               int camera) {
  const cv::Size size = sizeOf(format.resolution);
  return {size.width,        size.height,      layersOf(format.colorSpace),
          format.colorSpace, time / 1000000,   time % 1000000,
          std::move(pixels), camera,           kHalfWidthAngle,
          kHalfHeightAngle,  -kHalfWidthAngle, -kHalfHeightAngle};
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/services/image_record.h"

#include "robot/camera/field_of_view.h"

namespace robot {

Ky::KyValue::Array imageRecord(const Frame& frame, const ImageFormat& format) {
  const cv::Size size = sizeOf(format.resolution);
  return {size.width,
          size.height,
          layersOf(format.colorSpace),
          format.colorSpace,
          frame.time() / 1000000,
          frame.time() % 1000000,
          frame.pixels(format),
          frame.camera(),
          kHalfWidthAngle,
          kHalfHeightAngle,
          -kHalfWidthAngle,
          -kHalfHeightAngle};
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// From what a source takes to what readers get.
#pragma once

#include <opencv2/core.hpp>

#include "ky/binary.h"

namespace robot {

// `bgr`: 8-bit, three channels, for kYuv422 of even width. `colorSpace`: one of ColorSpace. Rows
// are packed.
Ky::KyBinary pixelsOf(const cv::Mat& bgr, int colorSpace);

// The picture in the middle of the smallest 4:3 canvas that holds it, with black bars where it does
// not reach, no larger than 1280 x 960. Returns the same pixels where that is already so. Accepts
// 8-bit pictures of 1, 3 or 4 channels; throws KyError for every other kind.
cv::Mat fitToCanvas(const cv::Mat& picture);

}  // namespace robot

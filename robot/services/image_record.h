// SPDX-License-Identifier: Apache-2.0
// The value in which a picture crosses the runtime.
#pragma once

#include "ky/value.h"
#include "robot/camera/frame.h"

namespace robot {

// [width, height, layers, colour space, seconds, microseconds, pixels, camera, left, top, right,
// bottom angle]. The pixels are the frame's own, not copied.
Ky::KyValue::Array imageRecord(const Frame& frame, const ImageFormat& format);
// The same of a picture whose pixels are something else. `time`: as Frame::time().
Ky::KyValue::Array imageRecord(const ImageFormat& format, std::int64_t time, Ky::KyBinary pixels,
                               int camera);

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// The sizes and colour spaces in which the robot delivers pictures.
#pragma once

#include <opencv2/core.hpp>

namespace robot {

constexpr int kResolutions = 4;  // 0 160x120, 1 320x240, 2 640x480, 3 1280x960
constexpr int kLargestResolution = 3;
constexpr int kMaxFps = 30;  // the most that a reader may ask for

// The numbers are those of the image record.
enum ColorSpace {
  kGrey = 0,    // Y
  kYuv422 = 9,  // Y0 U Y1 V for two pixels
  kYuv444 = 10  // Y U V
};

// One of those above.
struct ImageFormat {
  int resolution = 0;
  int colorSpace = kYuv422;
  bool operator==(const ImageFormat&) const = default;
};

// What one reader of a camera wants. fps: 1..kMaxFps.
struct Wish {
  ImageFormat format;
  int fps = 5;
  bool operator==(const Wish&) const = default;
};

inline bool isResolution(int resolution) {
  return resolution >= 0 && resolution < kResolutions;
}

// Throws KyError that names those there are.
void requireResolution(int resolution);

inline bool isColorSpace(int colorSpace) {
  return colorSpace == kGrey || colorSpace == kYuv422 || colorSpace == kYuv444;
}

inline bool isFrameRate(int fps) {
  return fps >= 1 && fps <= kMaxFps;
}

inline cv::Size sizeOf(int resolution) {
  return {160 << resolution, 120 << resolution};
}

// Bytes a pixel.
inline int layersOf(int colorSpace) {
  return colorSpace == kGrey ? 1 : colorSpace == kYuv422 ? 2 : 3;
}

}  // namespace robot

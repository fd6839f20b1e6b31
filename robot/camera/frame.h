// SPDX-License-Identifier: Apache-2.0
// One picture of a camera, in every format that somebody asks for.
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <opencv2/core.hpp>

#include "ky/binary.h"
#include "robot/camera/image_format.h"
#include "robot/camera/picture_controls.h"

namespace robot {

// Immutable to its users, shared by all readers, thread-safe. Each size and format is made when it
// is first asked for, once, whoever asks.
class Frame {
 public:
  // `picture`: BGR, 4:3, not changed any more. `time`: of capture, microseconds since the epoch.
  // `controls` are applied to each size when that is made: a small picture costs little.
  Frame(cv::Mat picture, std::int64_t time, int camera, const PictureControls& controls = {});

  std::int64_t time() const { return fTime; }
  int camera() const { return fCamera; }
  // BGR, in the size as taken and in one of the resolutions. Not to be written to.
  const cv::Mat& picture() const;
  const cv::Mat& picture(int resolution) const;
  const Ky::KyBinary& pixels(const ImageFormat& format) const;

 private:
  template <class T>
  struct Once {
    std::once_flag flag;
    T value;
  };

  cv::Mat fTaken;
  std::int64_t fTime;
  int fCamera;
  PictureControls fControls;
  mutable Once<cv::Mat> fPicture;
  mutable std::array<Once<cv::Mat>, kResolutions> fPictures;
  mutable std::array<Once<Ky::KyBinary>, kResolutions * 3> fPixels;
};

}  // namespace robot

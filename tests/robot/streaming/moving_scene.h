// SPDX-License-Identifier: Apache-2.0
// Pictures as a camera takes them that pans over the generated scene: everything moves, and the
// sensor adds its noise. The same number gives the same picture.
#pragma once

#include <opencv2/imgproc.hpp>

#include "robot/camera/generated_scene.h"
#include "robot/camera/image_format.h"
#include "robot/camera/pixels.h"

class MovingScene {
 public:
  explicit MovingScene(const robot::ImageFormat& format, int camera = 0)
      : fFormat(format), fScene(camera) {}

  // The pixels of an image record.
  Ky::KyBinary picture(int number) const {
    const cv::Mat scene = fScene.render(1700000000000000 + number * 33333LL);
    cv::Mat view;
    cv::resize(scene(cv::Rect(3 * number % 128, 2 * number % 96, 1152, 864)), view,
               robot::sizeOf(fFormat.resolution), 0, 0, cv::INTER_AREA);
    cv::Mat noise(view.size(), CV_16SC3);
    cv::RNG(static_cast<std::uint64_t>(number) + 1).fill(noise, cv::RNG::NORMAL, 0, 2);
    cv::add(view, noise, view, cv::noArray(), CV_8U);
    return robot::pixelsOf(view, fFormat.colorSpace);
  }

 private:
  robot::ImageFormat fFormat;
  robot::GeneratedScene fScene;
};

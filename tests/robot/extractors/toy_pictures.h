// SPDX-License-Identifier: Apache-2.0
// Pictures with balls and ducks.
#pragma once

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "robot/camera/image_format.h"
#include "robot/camera/pixels.h"

const cv::Scalar kOrangeBall(20, 90, 240), kGreenBall(60, 190, 40);

inline cv::Mat yuvOf(const cv::Mat& bgr) {
  const Ky::KyBinary pixels = robot::pixelsOf(bgr, robot::kYuv444);
  return cv::Mat(bgr.size(), CV_8UC3, const_cast<std::uint8_t*>(pixels.data())).clone();
}

inline cv::Mat greyPicture(int level = 128, cv::Size size = {320, 240}) {
  return {size, CV_8UC3, cv::Scalar::all(level)};
}

// With soft edges; where the middle of the first pixel is 0.5.
inline void drawDisc(cv::Mat& picture, cv::Point2d centre, double radius, cv::Scalar bgr) {
  constexpr int kShift = 4;
  constexpr double kFine = 1 << kShift;
  cv::circle(picture, {cvRound((centre.x - 0.5) * kFine), cvRound((centre.y - 0.5) * kFine)},
             cvRound((radius - 0.5) * kFine), bgr, cv::FILLED, cv::LINE_AA, kShift);
}

// A duck of discs, with or without what makes it one.
inline cv::Mat duckOf(double headRadius, double headAbove, bool beak) {
  const cv::Scalar yellow(30, 225, 255), orange(20, 110, 245);
  cv::Mat picture = greyPicture();
  drawDisc(picture, {150, 150}, 40, yellow);
  const cv::Point2d head(175, 150 - headAbove);
  if (beak)
    cv::rectangle(picture, cv::Rect2d(head.x, head.y - 8, headRadius + 15, 16), orange, cv::FILLED);
  drawDisc(picture, head, headRadius, yellow);
  return picture;
}

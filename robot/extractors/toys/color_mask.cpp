// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/color_mask.h"

#include <algorithm>
#include <array>
#include <opencv2/imgproc.hpp>

namespace robot {

namespace {

constexpr int kFiner = 4;  // steps of a colour, so that the weight of brightness stays whole
constexpr int kBlack = 16, kNeutral = 128;
constexpr int kFaint = 16;  // brightness above black of which nothing can be concluded

// The colour that something of `color` has in the light in which it is `y` bright, in fine steps.
struct Expected {
  int u;
  int v;
};

Expected expectedAt(int y, cv::Vec3i color) {
  const int light = color[0] - kBlack;
  const double share =
      light < kFaint ? 1.0 : std::clamp(static_cast<double>(y - kBlack) / light, 0.5, 1.5);
  const auto chroma = [&](int full) {
    return cvRound(kFiner * (kNeutral + (full - kNeutral) * share));
  };
  return {chroma(color[1]), chroma(color[2])};
}

}  // namespace

cv::Mat yuvOf(const Frame& frame, int resolution) {
  auto* pixels = const_cast<std::uint8_t*>(frame.pixels({resolution, kYuv444}).data());
  return {sizeOf(resolution), CV_8UC3, pixels};
}

cv::Mat colorMask(const cv::Mat& yuv, cv::Vec3i color, int tolerance) {
  std::array<Expected, 256> expected{};
  for (int y = 0; y < 256; ++y) expected[static_cast<std::size_t>(y)] = expectedAt(y, color);
  const int reach = tolerance * tolerance * kFiner * kFiner;
  cv::Mat mask(yuv.size(), CV_8U);
  for (int row = 0; row < yuv.rows; ++row) {
    const auto* pixel = yuv.ptr<cv::Vec3b>(row);
    auto* out = mask.ptr<std::uint8_t>(row);
    for (int x = 0; x < yuv.cols; ++x) {
      const int y = pixel[x][0] - color[0];
      const int u = kFiner * pixel[x][1] - expected[pixel[x][0]].u;
      const int v = kFiner * pixel[x][2] - expected[pixel[x][0]].v;
      out[x] = y * y + u * u + v * v <= reach ? 255 : 0;
    }
  }
  return mask;
}

void removeSpecks(cv::Mat& mask) {
  const cv::Mat block = cv::getStructuringElement(cv::MORPH_ELLIPSE, {3, 3});
  cv::morphologyEx(mask, mask, cv::MORPH_OPEN, block);
  cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, block);
}

}  // namespace robot

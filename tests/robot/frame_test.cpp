// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/frame.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

namespace robot {
namespace {

cv::Mat plain(cv::Size size) {
  return {size, CV_8UC3, cv::Scalar(10, 20, 30)};
}

TEST(Frame, ComesInEveryResolutionAndColourSpace) {
  const Frame frame(plain({768, 576}), 5, 1);
  for (int resolution = 0; resolution < kResolutions; ++resolution)
    for (const int colorSpace : {kGrey, kYuv422, kYuv444})
      EXPECT_EQ(frame.pixels({resolution, colorSpace}).size(),
                static_cast<std::size_t>(sizeOf(resolution).area()) * layersOf(colorSpace));
}

TEST(Frame, IsConvertedOnceForAllReaders) {
  const Frame frame(plain({1280, 960}), 5, 1);
  std::vector<std::thread> readers;
  std::array<const std::uint8_t*, 8> seen{};
  for (auto& one : seen)
    readers.emplace_back([&frame, &one] { one = frame.pixels({2, kYuv422}).data(); });
  for (auto& reader : readers) reader.join();
  EXPECT_NE(seen[0], nullptr);
  EXPECT_EQ(std::set(seen.begin(), seen.end()).size(), 1u);
}

TEST(Frame, IsNotCopiedWhereItHasTheSizeAlready) {
  const Frame frame(plain({1280, 960}), 5, 1);
  EXPECT_EQ(frame.picture(3).data, frame.picture().data);
  EXPECT_EQ(frame.picture(0).size(), cv::Size(160, 120));
}

TEST(Frame, AppliesItsControlsToEverySizeOnce) {
  PictureControls doubled;
  doubled.light = 2;
  for (const cv::Size size : {cv::Size(1280, 960), cv::Size(768, 576)}) {
    const Frame frame(plain(size), 5, 1, doubled);
    EXPECT_EQ(frame.picture().at<cv::Vec3b>(5, 5), cv::Vec3b(20, 40, 60));
    for (int resolution = 0; resolution < kResolutions; ++resolution)
      EXPECT_EQ(frame.picture(resolution).at<cv::Vec3b>(5, 5), cv::Vec3b(20, 40, 60));
  }
}

TEST(Frame, KeepsItsPixelsAliveInTheHandsOfAReader) {
  auto frame = std::make_unique<Frame>(plain({1280, 960}), 5, 1);
  const Ky::KyBinary pixels = frame->pixels({0, kGrey});
  frame.reset();
  EXPECT_EQ(pixels.data()[pixels.size() - 1], pixels.data()[0]);
}

}  // namespace
}  // namespace robot

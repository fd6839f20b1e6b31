// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/pixels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ky/error.h"
#include "robot/camera/image_format.h"
#include "robot/camera/row_conversion.h"

namespace robot {
namespace {

struct Yuv {
  double y, u, v;
};

// BT.601 for video, as the standard writes it.
Yuv exact(double b, double g, double r) {
  return {16 + 65.481 / 255 * r + 128.553 / 255 * g + 24.966 / 255 * b,
          128 - 37.797 / 255 * r - 74.203 / 255 * g + 112.0 / 255 * b,
          128 + 112.0 / 255 * r - 93.786 / 255 * g - 18.214 / 255 * b};
}

cv::Mat randomColors(int width, int height) {
  cv::Mat picture(height, width, CV_8UC3);
  cv::RNG random(7);
  random.fill(picture, cv::RNG::UNIFORM, 0, 256);
  // The corners of the cube, where sums are largest.
  for (int i = 0; i < 8 && i < width; ++i)
    picture.at<cv::Vec3b>(0, i) =
        cv::Vec3b((i & 1) != 0 ? 255 : 0, (i & 2) != 0 ? 255 : 0, (i & 4) != 0 ? 255 : 0);
  return picture;
}

Yuv exactAt(const cv::Mat& bgr, int row, int x) {
  const auto& c = bgr.at<cv::Vec3b>(row, x);
  return exact(c[0], c[1], c[2]);
}

Yuv exactMeanAt(const cv::Mat& bgr, int row, int x) {
  const auto &c = bgr.at<cv::Vec3b>(row, x), &d = bgr.at<cv::Vec3b>(row, x + 1);
  return exact((c[0] + d[0]) / 2.0, (c[1] + d[1]) / 2.0, (c[2] + d[2]) / 2.0);
}

constexpr double kStep = 1.3;  // one step, and what rounding adds

TEST(Pixels, GreyIsTheLuminanceOfEveryPixelAtAnyWidth) {
  for (const int width : {1, 3, 15, 17, 64, 101, 160}) {
    const cv::Mat bgr = randomColors(width, 3);
    const auto pixels = pixelsOf(bgr, kGrey);
    ASSERT_EQ(pixels.size(), static_cast<std::size_t>(width) * 3);
    for (int i = 0; i < width * 3; ++i)
      ASSERT_NEAR(pixels.data()[i], exactAt(bgr, i / width, i % width).y, kStep) << width;
  }
}

TEST(Pixels, Yuv444HoldsThreeBytesForEveryPixelAtAnyWidth) {
  for (const int width : {1, 3, 31, 33, 101, 160}) {
    const cv::Mat bgr = randomColors(width, 3);
    const auto pixels = pixelsOf(bgr, kYuv444);
    ASSERT_EQ(pixels.size(), static_cast<std::size_t>(width) * 9);
    for (int i = 0; i < width * 3; ++i) {
      const Yuv expected = exactAt(bgr, i / width, i % width);
      ASSERT_NEAR(pixels.data()[3 * i], expected.y, kStep);
      ASSERT_NEAR(pixels.data()[3 * i + 1], expected.u, kStep);
      ASSERT_NEAR(pixels.data()[3 * i + 2], expected.v, kStep);
    }
  }
}

TEST(Pixels, Yuv422SharesTheChrominanceOfTheMeanColourBetweenTwoPixels) {
  for (const int width : {2, 6, 30, 34, 102, 160}) {
    const cv::Mat bgr = randomColors(width, 3);
    const auto pixels = pixelsOf(bgr, kYuv422);
    ASSERT_EQ(pixels.size(), static_cast<std::size_t>(width) * 6);
    const std::uint8_t* at = pixels.data();
    for (int i = 0; i < width * 3; i += 2, at += 4) {
      const int row = i / width, x = i % width;
      ASSERT_NEAR(at[0], exactAt(bgr, row, x).y, kStep);
      ASSERT_NEAR(at[1], exactMeanAt(bgr, row, x).u, kStep);
      ASSERT_NEAR(at[2], exactAt(bgr, row, x + 1).y, kStep);
      ASSERT_NEAR(at[3], exactMeanAt(bgr, row, x).v, kStep);
    }
  }
}

TEST(Pixels, BlackWhiteAndGreyHaveNoColour) {
  for (const auto& [level, y] : {std::pair{0, 16}, {255, 235}, {128, 126}}) {
    const cv::Mat bgr(1, 2, CV_8UC3, cv::Scalar::all(level));
    const auto pixels = pixelsOf(bgr, kYuv422);
    EXPECT_NEAR(pixels.data()[0], y, level == 128 ? 1 : 0);
    EXPECT_EQ(pixels.data()[1], 128);
    EXPECT_EQ(pixels.data()[3], 128);
  }
}

TEST(Pixels, ARowEndsWhereItEnds) {
  const cv::Mat bgr = randomColors(38, 1);
  std::vector<std::uint8_t> out(38 * 3 + 1, 77);
  rowToYuv444(bgr.ptr(), 38, out.data());
  EXPECT_EQ(out.back(), 77);
}

TEST(Canvas, LeavesAFourToThreePictureAsItIs) {
  const cv::Mat picture(576, 768, CV_8UC3);
  EXPECT_EQ(fitToCanvas(picture).data, picture.data);
}

TEST(Canvas, PutsBarsAboveAndBelowAWidePicture) {
  const cv::Mat fitted = fitToCanvas(cv::Mat(360, 640, CV_8UC3, cv::Scalar::all(200)));
  ASSERT_EQ(fitted.size(), cv::Size(640, 480));
  EXPECT_EQ(fitted.at<cv::Vec3b>(59, 320), cv::Vec3b(0, 0, 0));
  EXPECT_EQ(fitted.at<cv::Vec3b>(60, 320), cv::Vec3b(200, 200, 200));
  EXPECT_EQ(fitted.at<cv::Vec3b>(419, 320), cv::Vec3b(200, 200, 200));
  EXPECT_EQ(fitted.at<cv::Vec3b>(420, 320), cv::Vec3b(0, 0, 0));
}

TEST(Canvas, PutsBarsBesideATallPicture) {
  const cv::Mat fitted = fitToCanvas(cv::Mat(300, 100, CV_8UC3, cv::Scalar::all(200)));
  ASSERT_EQ(fitted.size(), cv::Size(400, 300));
  EXPECT_EQ(fitted.at<cv::Vec3b>(150, 149), cv::Vec3b(0, 0, 0));
  EXPECT_EQ(fitted.at<cv::Vec3b>(150, 150), cv::Vec3b(200, 200, 200));
}

TEST(Canvas, ShrinksWhatIsLargerThanTheLargestResolution) {
  const cv::Mat fitted = fitToCanvas(cv::Mat(1000, 4000, CV_8UC3, cv::Scalar::all(200)));
  ASSERT_EQ(fitted.size(), cv::Size(1280, 960));
  EXPECT_EQ(fitted.at<cv::Vec3b>(480, 0), cv::Vec3b(200, 200, 200));
  EXPECT_EQ(fitted.at<cv::Vec3b>(100, 640), cv::Vec3b(0, 0, 0));
  EXPECT_EQ(fitToCanvas(cv::Mat(3000, 4000, CV_8UC3)).size(), cv::Size(1280, 960));
}

TEST(Canvas, HoldsEvenTheThinnestPicture) {
  EXPECT_LE(fitToCanvas(cv::Mat(1, 1, CV_8UC3, cv::Scalar::all(1))).rows, 2);
  EXPECT_EQ(fitToCanvas(cv::Mat(1, 30000, CV_8UC3, cv::Scalar::all(1))).size(),
            cv::Size(1280, 960));
}

TEST(Canvas, AcceptsGreyAndTransparentPictures) {
  EXPECT_EQ(fitToCanvas(cv::Mat(3, 4, CV_8UC1, cv::Scalar(9))).at<cv::Vec3b>(0, 0),
            cv::Vec3b(9, 9, 9));
  EXPECT_EQ(fitToCanvas(cv::Mat(3, 4, CV_8UC4, cv::Scalar(1, 2, 3, 4))).at<cv::Vec3b>(0, 0),
            cv::Vec3b(1, 2, 3));
}

TEST(Canvas, SaysWhichPicturesItCannotUse) {
  try {
    fitToCanvas(cv::Mat(3, 4, CV_32FC3));
    FAIL();
  } catch (const Ky::KyError& error) {
    EXPECT_STREQ(error.what(),
                 "pictures of the kind CV_32FC3 can't be used; 8-bit grey or colour is needed");
  }
}

}  // namespace
}  // namespace robot

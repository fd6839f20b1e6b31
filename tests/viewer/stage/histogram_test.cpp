// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/histogram.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <numeric>

#include "frames.h"
#include "viewer/stage/frame_picture.h"

namespace {

std::uint32_t sum(const Histogram::Counts& counts) {
  return std::accumulate(counts.begin(), counts.end(), 0U);
}

Histogram histogramOf(const Frame& frame) {
  return histogramOf(frame, pictureOf(frame));
}

TEST(Histogram, CountsEveryPixelOfASmallPicture) {
  const Histogram histogram = histogramOf(plainFrame({320, 240}, 90, 150, 100));
  EXPECT_EQ(histogram.luminance[90], 320U * 240U);
  EXPECT_EQ(sum(histogram.red), 320U * 240U);
  const QColor colour = pictureOf(plainFrame({1, 1}, 90, 150, 100)).pixelColor(0, 0);
  EXPECT_EQ(histogram.red[static_cast<std::size_t>(colour.red())], 320U * 240U);
  EXPECT_EQ(histogram.green[static_cast<std::size_t>(colour.green())], 320U * 240U);
  EXPECT_EQ(histogram.blue[static_cast<std::size_t>(colour.blue())], 320U * 240U);
}

TEST(Histogram, CountsEveryFourthPixelOfALargePicture) {
  EXPECT_EQ(sum(histogramOf(plainFrame({1280, 960}, 90)).luminance), 640U * 480U);
}

TEST(Histogram, IsPaintedIntoItsBox) {
  QImage image(200, 100, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  paintHistogram(painter, histogramOf(markedFrame({320, 240})), {20, 10, 160, 80});
  EXPECT_EQ(image.pixel(10, 50), 0xffffffff);
  EXPECT_LT(qGray(image.pixel(26, 14)), 150);
}

TEST(Histogram, OfOneColourIsPaintedToo) {
  QImage image(200, 100, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  paintHistogram(painter, histogramOf(plainFrame({8, 8}, 90)), {0, 0, 200, 100});
  EXPECT_LT(qGray(image.pixel(100, 20)), 150);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/nearest_sampling.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <random>

namespace {

QImage onPaper(const QPixmap& pixmap) {
  QImage image(pixmap.size(), QImage::Format_RGB32);
  image.fill(0xfffafafa);
  QPainter(&image).drawPixmap(0, 0, pixmap);
  return image;
}

TEST(NearestSampling, PaintsWhatAPixmapOfTheWholeFramePaints) {
  std::mt19937 random(3);
  const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(1, most)(random); };
  NearestSampling sampling;
  for (int i = 0; i < 400; ++i) {
    QImage frame(upTo(i % 4 == 0 ? 1280 : 200), upTo(120), QImage::Format_ARGB32);
    std::generate_n(frame.bits(), frame.sizeInBytes(),
                    [&] { return static_cast<uchar>(random()); });
    if (i % 2 == 0) frame = frame.convertToFormat(QImage::Format_RGB32);
    frame.reinterpretAsFormat(QImage::Format_ARGB32);
    const QSize size(upTo(330), upTo(160));
    const QPixmap expected =
        QPixmap::fromImage(frame).scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    for (int paint = 0; paint < 2; ++paint)
      ASSERT_EQ(onPaper(sampling.scaled(frame, size)), onPaper(expected))
          << frame.width() << " x " << frame.height() << " to " << size.width() << " x "
          << size.height();
  }
}

TEST(NearestSampling, FollowsAChangeOfEitherSize) {
  NearestSampling sampling;
  const auto expectItFrom = [&](const QSize& from, const QSize& to) {
    QImage frame(from, QImage::Format_ARGB32);
    for (int x = 0; x < from.width(); ++x)
      for (int y = 0; y < from.height(); ++y) frame.setPixel(x, y, qRgb(x, y, 0));
    const QPixmap expected =
        QPixmap::fromImage(frame).scaled(to, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    EXPECT_EQ(onPaper(sampling.scaled(frame, to)), onPaper(expected));
  };
  expectItFrom({64, 48}, {32, 24});
  expectItFrom({64, 48}, {50, 10});
  expectItFrom({80, 60}, {50, 10});
}

}  // namespace

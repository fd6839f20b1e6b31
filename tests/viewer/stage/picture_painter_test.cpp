// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/picture_painter.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "frames.h"
#include "viewer/stage/frame_picture.h"

namespace {

constexpr QRgb kUntouched = 0xff123456;

struct View {
  QImage picture;
  Viewport viewport;
  PicturePainter painter;

  View(QSize pictureSize, QSize viewSize) : View(pictureOf(markedFrame(pictureSize)), viewSize) {}
  View(QImage shown, QSize viewSize) : picture(std::move(shown)) {
    viewport.setPicture(picture.size());
    viewport.setView(viewSize);
  }
  QImage paint() {
    QImage image(viewport.view(), QImage::Format_RGB32);
    image.fill(kUntouched);
    QPainter target(&image);
    painter.paint(target, picture, viewport);
    return image;
  }
};

// The pixel of the picture that stands at a device pixel.
QPoint pixelAt(const Viewport& viewport, QPoint at) {
  const QPointF place = viewport.toPicture().map(QPointF(at) + QPointF(0.5, 0.5));
  return {static_cast<int>(place.x()), static_cast<int>(place.y())};
}

struct Exact {
  double scale;
  int quarters;
  bool mirrored;
};

class ExactPicture : public testing::TestWithParam<Exact> {};

TEST_P(ExactPicture, ShowsEachPixelAsItIs) {
  View view({61, 43}, {200, 150});
  view.viewport.turn(GetParam().quarters);
  view.viewport.setMirrored(GetParam().mirrored);
  view.viewport.zoomTo(GetParam().scale, {30, 40});
  const QImage image = view.paint();
  const QRectF shown = view.viewport.pictureRect();
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const QPointF middle(x + 0.5, y + 0.5);
      const QRgb expected =
          shown.contains(middle) ? view.picture.pixel(pixelAt(view.viewport, {x, y})) : kUntouched;
      ASSERT_EQ(image.pixel(x, y), expected) << x << ", " << y;
    }
}

INSTANTIATE_TEST_SUITE_P(, ExactPicture,
                         testing::Values(Exact{1, 0, false}, Exact{1, 1, false}, Exact{1, 2, true},
                                         Exact{1, 3, true}, Exact{4, 0, false}, Exact{8, 0, false},
                                         Exact{8, 1, true}, Exact{16, 3, false}));

TEST(PicturePainter, FillsTheViewOfAFittedPictureOfTheSameAspect) {
  for (const QSize size : {QSize(640, 480), QSize(200, 150), QSize(1440, 1080)}) {
    View view({320, 240}, size);
    const QImage image = view.paint();
    for (const QPoint corner :
         {QPoint(0, 0), QPoint(size.width() - 1, 0), QPoint(size.width() - 1, size.height() - 1)})
      EXPECT_NE(image.pixel(corner), kUntouched) << size.width();
  }
}

// Half black, half white.
QImage edge(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::black);
  QPainter(&image).fillRect(size.width() / 2, 0, size.width(), size.height(), Qt::white);
  return image;
}

TEST(PicturePainter, GoesSmoothlyFromPixelToPixelWhenEnlarged) {
  View view(edge({64, 48}), {192, 144});
  const QImage image = view.paint();
  QList<int> greys;
  for (int x = 90; x < 103; ++x) greys << qGray(image.pixel(x, 72));
  EXPECT_TRUE(std::is_sorted(greys.begin(), greys.end()));
  EXPECT_TRUE(
      std::any_of(greys.begin(), greys.end(), [](int grey) { return grey > 60 && grey < 200; }));
}

TEST(PicturePainter, AveragesWhenReduced) {
  QImage stripes(320, 240, QImage::Format_RGB32);
  for (int y = 0; y < 240; ++y)
    for (int x = 0; x < 320; ++x) stripes.setPixel(x, y, x % 2 == 0 ? 0xff000000 : 0xffffffff);
  View view(stripes, {80, 60});
  const QImage image = view.paint();
  for (int x = 0; x < 80; ++x) EXPECT_NEAR(qGray(image.pixel(x, 30)), 128, 3);
}

TEST(PicturePainter, ShowsTheSameOfAPartAsOfTheWhole) {
  View whole({320, 240}, {960, 720});
  const QImage all = whole.paint();
  View part({320, 240}, {300, 200});
  part.viewport.zoomTo(3, {100, 60});
  const QImage some = part.paint();
  const QPoint moved = part.viewport.pictureRect().topLeft().toPoint();
  for (int y = 2; y < 198; y += 7)
    for (int x = 2; x < 298; x += 7)
      EXPECT_NEAR(qGray(some.pixel(x, y)), qGray(all.pixel(QPoint(x, y) - moved)), 26)
          << x << ", " << y;
}

TEST(PicturePainter, TurnsAndMirrorsWhatItEnlarges) {
  View view(edge({64, 48}), {96, 128});
  view.viewport.turn(1);
  const QImage turned = view.paint();
  EXPECT_EQ(turned.pixel(48, 10), 0xff000000);
  EXPECT_EQ(turned.pixel(48, 118), 0xffffffff);
  view.viewport.turn(-1);
  view.viewport.setMirrored(true);
  const QImage mirrored = view.paint();
  EXPECT_EQ(qGray(mirrored.pixel(10, 64)), 255);
  EXPECT_EQ(qGray(mirrored.pixel(86, 64)), 0);
}

TEST(PicturePainter, ShowsTheNewPictureAfterTheOld) {
  View view(edge({64, 48}), {96, 72});
  view.paint();
  view.picture.fill(Qt::red);
  EXPECT_EQ(view.paint().pixel(10, 10), 0xffff0000);
}

TEST(PicturePainter, PaintsNothingWithoutAPictureOrAView) {
  View nothing(QImage(), {20, 20});
  EXPECT_EQ(nothing.paint().pixel(10, 10), kUntouched);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <limits>
#include <random>
#include <vector>

#include "viewer/view/lettering.h"
#include "viewer/view/overlay_painter.h"
#include "viewer/view/overlay_passes.h"

namespace {

constexpr QRect kView(0, 0, 640, 480);
constexpr QPoint kOrigin(160, 120);
constexpr QSize kPicture(320, 240);

QImage canvas() {
  QImage image(kView.size(), QImage::Format_RGB32);
  image.fill(Qt::white);
  return image;
}

QImage paintedOnce(const std::vector<displayObject>& items, Lettering& lettering) {
  QImage image = canvas();
  QPainter painter(&image);
  painter.translate(kOrigin);
  lettering.begin(painter);
  for (const displayObject& item : items)
    paintOverlay(painter, lettering, item, kPicture, QRectF(kView).translated(-kOrigin));
  return image;
}

// What is kept for the next paint must not show.
QImage painted(const displayObject& item) {
  Lettering lettering;
  const QImage image = paintedOnce({item}, lettering);
  EXPECT_EQ(paintedOnce({item}, lettering), image) << "painted again";
  return image;
}

// The same with every single pass and in whole numbers.
QImage paintedPassByPass(const displayObject& item, QImage image = canvas()) {
  QPainter painter(&image);
  painter.translate(kOrigin);
  const double cx = item.x * kPicture.width();
  const double cy = item.y * kPicture.height();
  const int half = item.diameter / 2;
  const auto whole = [](double value) { return static_cast<int>(value); };
  for (int i = 0; i <= item.thickness; ++i) {
    painter.setPen(QPen(QColor(item.colour), 0));
    if (!(cy + i > 0)) continue;
    const int side = item.diameter + 2 * i;
    if (item.shape == 0)
      painter.drawEllipse(whole(cx - i - half), whole(cy - i - half), side, side);
    if (item.shape == 2) painter.drawRect(whole(cx - i - half), whole(cy - i - half), side, side);
    if (item.shape == 1) {
      painter.drawLine(whole(cx - half), whole(cy + i), whole(cx + half), whole(cy + i));
      painter.drawLine(whole(cx + i), whole(cy - half), whole(cx + i), whole(cy + half));
    }
    painter.drawText(whole(static_cast<float>(cx) + 5), whole(static_cast<float>(cy) + 5),
                     QString::fromLatin1(item.description.c_str()));
  }
  return image;
}

displayObject item(int shape, double x, double y, int diameter, int thickness) {
  displayObject result;
  result.shape = shape;
  result.x = x;
  result.y = y;
  result.diameter = diameter;
  result.thickness = thickness;
  result.colour = 0xff0000;
  return result;
}

bool isRed(const QImage& image, int x, int y) {
  return image.pixel(kOrigin + QPoint(x, y)) == 0xffff0000;
}

int redPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == 0xffff0000 ? 1 : 0;
  return count;
}

TEST(Overlay, DrawsACircleAsConcentricPasses) {
  const QImage image = painted(item(0, 0.5, 0.5, 10, 2));
  QImage expected = canvas();
  QPainter painter(&expected);
  painter.translate(kOrigin);
  painter.setPen(QPen(Qt::red, 0));
  painter.drawEllipse(155, 115, 10, 10);
  painter.drawEllipse(154, 114, 12, 12);
  painter.drawEllipse(153, 113, 14, 14);
  painter.end();
  EXPECT_EQ(image, expected);
  // The rings at the left end of the middle row, and nothing on either side of them.
  EXPECT_FALSE(isRed(image, 152, 120));
  for (int x = 153; x <= 155; ++x) EXPECT_TRUE(isRed(image, x, 120)) << x;
  EXPECT_FALSE(isRed(image, 156, 120));
}

TEST(Overlay, DrawsASquareAsConcentricOutlines) {
  const QImage image = painted(item(2, 0.5, 0.5, 10, 1));
  for (int x = 154; x <= 166; ++x) EXPECT_TRUE(isRed(image, x, 114)) << x;
  for (int y = 115; y <= 125; ++y) EXPECT_TRUE(isRed(image, 155, y)) << y;
  EXPECT_FALSE(isRed(image, 153, 113));
  EXPECT_FALSE(isRed(image, 156, 116));
  EXPECT_FALSE(isRed(image, 167, 127));
}

TEST(Overlay, GrowsACrossDownAndToTheRightOnly) {
  const QImage image = painted(item(1, 0.5, 0.5, 10, 2));
  for (int row = 120; row <= 122; ++row) {
    for (int x = 155; x <= 165; ++x) EXPECT_TRUE(isRed(image, x, row)) << x << "," << row;
  }
  for (int column = 160; column <= 162; ++column) {
    for (int y = 115; y <= 125; ++y) EXPECT_TRUE(isRed(image, column, y)) << column << "," << y;
  }
  EXPECT_FALSE(isRed(image, 157, 119));
  EXPECT_FALSE(isRed(image, 157, 123));
  EXPECT_FALSE(isRed(image, 159, 117));
  EXPECT_FALSE(isRed(image, 163, 117));
  EXPECT_EQ(redPixels(image), 3 * 11 * 2 - 9);
}

TEST(Overlay, PutsTheTextFivePixelsRightOfAndBelowTheCentre) {
  displayObject label = item(7, 0.5, 0.5, 10, 0);
  label.description = "ball";
  QImage expected = canvas();
  QPainter painter(&expected);
  painter.translate(kOrigin);
  painter.setPen(QPen(Qt::red, 0));
  painter.drawText(QPoint(165, 125), "ball");
  painter.end();
  ASSERT_NE(expected, canvas());
  EXPECT_EQ(painted(label), expected);
}

TEST(Overlay, DrawsTheTextOncePerPass) {
  displayObject label = item(7, 0.5, 0.5, 10, 2);
  label.description = "ball";
  QImage expected = canvas();
  QPainter painter(&expected);
  painter.translate(kOrigin);
  painter.setPen(QPen(Qt::red, 0));
  for (int i = 0; i < 3; ++i) painter.drawText(QPoint(165, 125), "ball");
  painter.end();
  EXPECT_EQ(painted(label), expected);
  label.thickness = 1;
  EXPECT_NE(painted(label), expected);  // softer edges
}

TEST(Overlay, ReadsTheTextAsLatinOne) {
  displayObject label = item(7, 0.5, 0.5, 10, 0);
  label.description = "caf\xe9";
  QImage expected = canvas();
  QPainter painter(&expected);
  painter.translate(kOrigin);
  painter.setPen(QPen(Qt::red, 0));
  painter.drawText(QPoint(165, 125), QString::fromUtf8("caf\xc3\xa9"));
  painter.end();
  EXPECT_EQ(painted(label), expected);
}

TEST(Overlay, DrawsNothingForAnUnknownShapeWithoutText) {
  EXPECT_EQ(painted(item(3, 0.5, 0.5, 10, 2)), canvas());
  EXPECT_EQ(painted(item(-1, 0.5, 0.5, 10, 2)), canvas());
}

TEST(Overlay, DrawsNothingWithANegativeThickness) {
  displayObject none = item(0, 0.5, 0.5, 10, -1);
  none.description = "none";
  EXPECT_EQ(painted(none), canvas());
}

TEST(Overlay, SkipsWhatIsNotBelowThePicturesTop) {
  displayObject top = item(0, 0.5, 0, 10, 0);
  top.description = "top";
  EXPECT_EQ(painted(top), canvas());
  top.y = -0.01;
  EXPECT_EQ(painted(top), canvas());
}

TEST(Overlay, DrawsThePassesThatGrowBelowThePicturesTop) {
  const QImage image = painted(item(2, 0.5, 0, 10, 1));
  QImage expected = canvas();
  QPainter painter(&expected);
  painter.translate(kOrigin);
  painter.setPen(QPen(Qt::red, 0));
  painter.drawRect(154, -6, 12, 12);
  painter.end();
  EXPECT_EQ(image, expected);
}

TEST(Overlay, FollowsThePicturesSize) {
  QImage image = canvas();
  QPainter painter(&image);
  Lettering lettering;
  lettering.begin(painter);
  paintOverlay(painter, lettering, item(2, 0.25, 0.5, 4, 0), QSizeF(200, 100), QRectF(kView));
  painter.end();
  EXPECT_EQ(image.pixel(48, 48), 0xffff0000);
  EXPECT_EQ(image.pixel(52, 52), 0xffff0000);
}

TEST(Overlay, IgnoresTheColoursAlpha) {
  displayObject opaque = item(2, 0.5, 0.5, 10, 0);
  opaque.colour = 0x00ff0000;
  const QImage image = painted(opaque);
  opaque.colour = 0x80ff0000;
  EXPECT_EQ(painted(opaque), image);
  EXPECT_TRUE(isRed(image, 155, 115));
}

TEST(Overlay, LeavesItsColourInThePen) {
  QImage image = canvas();
  QPainter painter(&image);
  painter.setPen(Qt::blue);
  Lettering lettering;
  lettering.begin(painter);
  paintOverlay(painter, lettering, item(0, 0.5, 0.5, 10, -1), kPicture, QRectF(kView));
  EXPECT_EQ(painter.pen().color(), QColor(Qt::blue));
  paintOverlay(painter, lettering, item(0, 0.5, 0.5, 10, 0), kPicture, QRectF(kView));
  EXPECT_EQ(painter.pen().color(), QColor(Qt::red));
  EXPECT_EQ(painter.pen().width(), 0);
}

TEST(Overlay, LooksAsIfEveryPassHadBeenPainted) {
  std::mt19937 random(7);
  const auto in = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  for (int i = 0; i < 600; ++i) {
    displayObject some = item(in(0, 3), in(-400, 600) / 100.0, in(-300, 500) / 100.0,
                              in(-900, 2500), in(-1, 60) * (i % 10 == 0 ? 40 : 1));
    if (i % 3 == 0) some.description = "figur\xe9 " + std::to_string(i);
    ASSERT_EQ(painted(some), paintedPassByPass(some))
        << "shape " << some.shape << " at " << some.x << "," << some.y << " diameter "
        << some.diameter << " thickness " << some.thickness;
  }
}

TEST(Overlay, LooksAsIfEveryPassOfAThousandFiguresHadBeenPainted) {
  std::mt19937 random(9);
  const auto in = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  std::vector<displayObject> items;
  for (int i = 0; i < 1000; ++i) {
    items.push_back(item(i % 4, in(-20, 120) / 100.0, in(-20, 120) / 100.0, in(0, 90), i % 6));
    items.back().colour = random();
    items.back().description = "figur\xe9 " + std::to_string(i);
  }
  QImage expected = canvas();
  for (const displayObject& item : items) expected = paintedPassByPass(item, expected);
  Lettering lettering;
  for (int paint = 0; paint < 3; ++paint)
    EXPECT_EQ(paintedOnce(items, lettering), expected) << paint;
}

TEST(Overlay, CountsThePassesBelowTheTop) {
  EXPECT_EQ(drawnPasses(2, 0.5), 3);
  EXPECT_EQ(drawnPasses(2, 0), 2);
  EXPECT_EQ(drawnPasses(2, -0.5), 2);
  EXPECT_EQ(drawnPasses(2, -1), 1);
  EXPECT_EQ(drawnPasses(2, -2), 0);
  EXPECT_EQ(drawnPasses(2, -1e300), 0);
  EXPECT_EQ(drawnPasses(-1, 1), 0);
  EXPECT_EQ(drawnPasses(std::numeric_limits<int>::min(), 1), 0);
  EXPECT_EQ(drawnPasses(std::numeric_limits<int>::max(), 1), std::int64_t{1} << 31);
}

// Everything that a program on the robot may write into a record. Would take minutes, or never end,
// if a pass were painted for every step of the thickness.
TEST(Overlay, SurvivesEveryExtreme) {
  using Int = std::numeric_limits<int>;
  using Double = std::numeric_limits<double>;
  const double places[] = {Double::quiet_NaN(),
                           Double::infinity(),
                           -Double::infinity(),
                           Double::max(),
                           Double::lowest(),
                           1e9,
                           -1e9,
                           7e6,
                           0.5,
                           Double::denorm_min()};
  const int sizes[] = {Int::min(), -1000000, 0, 10, 40000, 2000000000, Int::max()};
  const int thicknesses[] = {Int::min(), 0, 100000, Int::max()};
  std::int64_t passes = 0;
  Lettering lettering;
  for (const double x : places) {
    for (const double y : places) {
      std::vector<displayObject> nowhere;
      for (const int size : sizes) {
        for (const int thickness : thicknesses) {
          for (const int shape : {0, 1, 2, 3}) {
            const displayObject extreme = item(shape, x, y, size, thickness);
            if (!std::isfinite(x * 320) || !std::isfinite(y * 240)) {
              nowhere.push_back(extreme);
              continue;
            }
            for (const auto& range :
                 touchingPasses(extreme, x * 320, y * 240, QRectF(kView).translated(-kOrigin)))
              passes = std::max(passes, range.last - range.first + 1);
          }
        }
      }
      EXPECT_EQ(paintedOnce(nowhere, lettering), canvas()) << x << ", " << y;
    }
  }
  EXPECT_LT(passes, 1000);
  EXPECT_GT(passes, 100);
}

TEST(Overlay, PaintsAHugeThicknessAtOnce) {
  displayObject huge = item(2, 0.5, 0.5, 0, std::numeric_limits<int>::max());
  huge.description = std::string(1 << 20, 'x');
  EXPECT_EQ(redPixels(painted(huge)), 640 * 480 - 1);  // a square without sides has no corner
  huge.shape = 0;
  EXPECT_GT(redPixels(painted(huge)), 250000);  // circles leave gaps between each other
  huge.shape = 1;
  huge.diameter = 2000000000;
  EXPECT_EQ(redPixels(painted(huge)), 640 * 480 - 320 * 240);
}

TEST(Overlay, PaintsTheEdgeOfAHugeSquare) {
  // Its left side stands in the picture's middle, its centre a billion pixels to the right.
  const QImage image = painted(item(2, 1e9 / 320 + 0.5, 0.5, 2000000000, 0));
  EXPECT_TRUE(isRed(image, 160, 0));
  EXPECT_TRUE(isRed(image, 160, 239));
  EXPECT_EQ(redPixels(image), 480);
}

}  // namespace

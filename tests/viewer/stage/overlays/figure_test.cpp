// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/figure.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "looks.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

int brightnessOf(QRgb pixel) {
  return qGray(pixel);
}

// The largest difference in brightness to the background, on the way from the figure's inside to
// its outside, to the right.
int contrastAcross(const QImage& with, const QImage& without, QPoint middle) {
  int most = 0;
  for (int x = middle.x() + 1; x < with.width(); ++x)
    most = std::max(most, std::abs(brightnessOf(with.pixel(x, middle.y())) -
                                   brightnessOf(without.pixel(x, middle.y()))));
  return most;
}

TEST(Figures, StandOutFromAnyPicture) {
  for (const std::uint32_t colour : {0x0000C8u, 0xFFFFFFu, 0u, 0x808080u, 0xFFC800u, 0xFF0000u})
    for (const int shape : {0, 1, 2}) {
      const Viewport viewport = viewportOf(2);
      const OverlayLook look = lookAt(viewport);
      const QImage backgrounds[] = {
          filled(viewport.view(), Qt::white), filled(viewport.view(), Qt::black),
          filled(viewport.view(), QColor(colour)), filled(viewport.view(), Qt::gray)};
      for (const QImage& background : backgrounds) {
        QImage image = background;
        StageOverlays overlays;
        drawOn(image, {sourceOf({itemOf(shape, 0.5, 0.5, 40, {}, colour)})}, look, overlays);
        EXPECT_GE(contrastAcross(image, background, {320, 240}), 80)
            << std::hex << colour << " on " << background.pixel(0, 0) << " shape " << shape;
      }
    }
}

// On noise no single pixel says anything: along the line it is all one colour, beside it another.
TEST(Figures, AreUnbrokenOnNoise) {
  const Viewport viewport = viewportOf(2);
  QImage image = noise(viewport.view());
  StageOverlays overlays;
  drawOn(image, {sourceOf({itemOf(2, 0.5, 0.5, 40)})}, lookAt(viewport), overlays);
  const int line = figureOf(itemOf(2, 0.5, 0.5, 40), lookAt(viewport))->line;
  for (int y = 240 - 39; y < 240 + 39; ++y) {
    EXPECT_EQ(image.pixel(320 + 40 - 1, y), 0xFFFFFFFF) << y;
    for (int x = 0; x < line; ++x) EXPECT_EQ(image.pixel(320 + 40 + x, y), 0xFF0000C8) << y;
    EXPECT_EQ(image.pixel(320 + 40 + line, y), 0xFFFFFFFF) << y;
  }
}

TEST(Figures, GrowWithThePicture) {
  for (const double scale : {1.0, 2.0, 8.0})
    for (const int shape : {0, 1, 2}) {
      const Viewport viewport = viewportOf(scale);
      const displayObject item = itemOf(shape, 0.25, 0.5, 40);
      const QRect box = inked(drawn({sourceOf({item})}, lookAt(viewport)));
      const Figure figure = figureOf(item, lookAt(viewport)).value();
      const double beyond = shape == 1 ? 0 : figure.line;  // white edges aren't seen on white
      EXPECT_NEAR(box.width(), 40 * scale + 2 * beyond, 2) << scale << " shape " << shape;
      EXPECT_NEAR(box.height(), 40 * scale + 2 * beyond, 2) << scale << " shape " << shape;
      EXPECT_NEAR(box.center().x() + 0.5, 80 * scale, 1) << scale << " shape " << shape;
      EXPECT_NEAR(box.center().y() + 0.5, 120 * scale, 1) << scale << " shape " << shape;
    }
}

TEST(Figures, HaveTheSizeOfTheSmallViewsPicture) {
  // Its pictures are 320 pixels wide up to 640, and a quarter of larger ones.
  const std::pair<QSize, double> table[] = {
      {{160, 120}, 0.5}, {{320, 240}, 1}, {{640, 480}, 2}, {{1280, 960}, 4}, {{800, 600}, 4}};
  for (const auto& [size, pixels] : table)
    EXPECT_DOUBLE_EQ(lookAt(viewportOf(1, size)).figureScale(), pixels) << size.width();
}

TEST(Figures, HaveLinesNeitherThinNorThickBeyondSense) {
  for (const double scale : {0.25, 1.0, 4.0, 64.0})
    for (const int thickness : {0, 2, 50, INT_MAX}) {
      displayObject item = itemOf(0, 0.5, 0.5, 20);
      item.thickness = thickness;
      const Viewport viewport = viewportOf(scale);
      const int line = figureOf(item, lookAt(viewport)).value().line;
      EXPECT_GE(line, 1);
      EXPECT_LE(line, 8);
    }
  displayObject thin = itemOf(0, 0.5, 0.5, 20), thick = thin;
  thin.thickness = 0;
  thick.thickness = 4;
  const Viewport viewport = viewportOf(2);
  EXPECT_LT(figureOf(thin, lookAt(viewport))->line, figureOf(thick, lookAt(viewport))->line);
}

struct Turn {
  int quarters;
  bool isMirrored;
  QPointF place;  // of what is at (0.25, 0.1), as fractions of the view
};

TEST(Figures, FollowATurnedAndMirroredPicture) {
  const Turn table[] = {{0, false, {0.25, 0.1}}, {1, false, {0.9, 0.25}}, {2, false, {0.75, 0.9}},
                        {3, false, {0.1, 0.75}}, {0, true, {0.75, 0.1}},  {1, true, {0.1, 0.25}}};
  for (const Turn& turn : table) {
    Viewport viewport = viewportOf(2);
    viewport.turn(turn.quarters);
    viewport.setMirrored(turn.isMirrored);
    if (turn.quarters % 2 != 0) viewport.setView({480, 640});
    const OverlayLook look = lookAt(viewport);
    const QRect box = inked(drawn({sourceOf({itemOf(2, 0.25, 0.1, 10)})}, look));
    EXPECT_NEAR(box.center().x() + 0.5, turn.place.x() * look.view.width(), 1) << turn.quarters;
    EXPECT_NEAR(box.center().y() + 0.5, turn.place.y() * look.view.height(), 1) << turn.quarters;
  }
}

TEST(Figures, OfNoSizeAreTextOnlyUnlessTheyAreThick) {
  const OverlayLook look = lookAt(viewportOf(2));
  displayObject item = itemOf(0, 0.5, 0.5, 0);
  item.thickness = 0;
  EXPECT_FALSE(figureOf(item, look));
  item.thickness = 2;
  for (const int shape : {0, 1, 2}) {
    item.shape = shape;
    const QRect box = inked(drawn({sourceOf({item})}, look));
    EXPECT_GE(box.width(), 2) << shape;
    EXPECT_LE(box.width(), 10) << shape;
  }
  item.shape = 3;
  EXPECT_FALSE(figureOf(item, look));
  item.shape = 0;
  item.thickness = -1;  // as in the small view: nothing at all
  item.description = "text";
  EXPECT_TRUE(inked(drawn({sourceOf({item})}, look)).isNull());
}

TEST(Figures, OfANegativeSizeAreAsLargeAsOfAPositiveOne) {
  const OverlayLook look = lookAt(viewportOf(2));
  EXPECT_EQ(drawn({sourceOf({itemOf(0, 0.5, 0.5, -30)})}, look),
            drawn({sourceOf({itemOf(0, 0.5, 0.5, 30)})}, look));
}

TEST(Figures, AreSafeWhateverARobotSays) {
  const double places[] = {
      0,     0.5,    -0.1,       1.1,  1e9,
      1e308, -1e308, -kInfinity, kNaN, std::numeric_limits<double>::denorm_min()};
  const int sizes[] = {0, 1, -1, 300, 4000, 1000000, INT_MAX, INT_MIN};
  std::vector<displayObject> items;
  for (const double x : places)
    for (const double y : {0.5, x})
      for (const int diameter : sizes)
        for (const int thickness : {0, 3, INT_MAX, INT_MIN})
          for (const int shape : {0, 1, 2, 3, INT_MIN}) {
            displayObject item = itemOf(shape, x, y, diameter, "\xFF\x00text");
            item.thickness = thickness;
            items.push_back(item);
          }
  for (const double scale : {0.1, 1.0, 64.0}) {
    Viewport viewport = viewportOf(1);
    viewport.zoomTo(scale, {160, 120});
    const OverlayLook look = lookAt(viewport);
    StageOverlays overlays;
    QImage image = filled(look.view.size(), Qt::white);
    drawOn(image, {sourceOf(items)}, look, overlays);
    for (const QRect& label : overlays.labelRects()) EXPECT_TRUE(look.view.contains(label));
  }
}

TEST(Figures, BeyondTheViewShowTheirLineWhereItCrossesIt) {
  // A circle so large that its line is straight, through the view's middle.
  for (const int diameter : {20000, 2000000, 2000000000}) {
    const double x = 0.5 - diameter / 2 / 320.0;
    const OverlayLook look = lookAt(viewportOf(2));
    for (const int shape : {0, 2}) {
      const QImage image = drawn({sourceOf({itemOf(shape, x, 0.5, diameter)})}, look);
      const QRect box = inked(image);
      EXPECT_NEAR(box.center().x(), 320, 8) << diameter << " shape " << shape;
      EXPECT_EQ(box.height(), 480) << diameter << " shape " << shape;
      EXPECT_LT(box.width(), 20) << diameter << " shape " << shape;
    }
  }
}

TEST(Figures, BeyondTheViewAreRoundAllAround) {
  const OverlayLook look = lookAt(viewportOf(2));
  for (const int diameter : {10000, 1000000, 1000000000})
    for (int degrees = 0; degrees < 360; degrees += 15) {
      // Through the view's middle, which is this far round the circle.
      const double angle = degrees * 3.14159265358979 / 180;
      const QPointF place(0.5 - diameter / 2 * std::cos(angle) / 320,
                          0.5 - diameter / 2 * std::sin(angle) / 240);
      const QImage image = drawn({sourceOf({itemOf(0, place.x(), place.y(), diameter)})}, look);
      const QRect middle = inked(image.copy(310, 230, 20, 20));
      EXPECT_FALSE(middle.isNull()) << diameter << " at " << degrees;
    }
}

TEST(Figures, ThatAreDrawnOftenLookAsThoseDrawnOnce) {
  // Larger ones are not kept as pictures.
  const OverlayLook look = lookAt(viewportOf(1, {640, 640}));
  for (const int shape : {0, 1, 2}) {
    displayObject item = itemOf(shape, 0.5, 0.5, 60);
    const Figure figure = figureOf(item, look).value();
    QImage once = filled({640, 640}, Qt::white);
    QPainter painter(&once);
    paintFigure(painter, figure, look.view);
    painter.end();
    EXPECT_EQ(inked(drawn({sourceOf({item})}, look)), inked(once)) << shape;
  }
}

}  // namespace

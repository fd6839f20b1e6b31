// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/stage_overlays.h"

#include <gtest/gtest.h>

#include <cmath>

#include "looks.h"

namespace {

// How far the farthest and the nearest point of the rectangle are from the place.
std::pair<double, double> distancesTo(const QRectF& rect, const QPointF& place) {
  const double x = std::max({0.0, rect.left() - place.x(), place.x() - rect.right()});
  const double y = std::max({0.0, rect.top() - place.y(), place.y() - rect.bottom()});
  const double farX =
      std::max(std::abs(rect.left() - place.x()), std::abs(rect.right() - place.x()));
  const double farY =
      std::max(std::abs(rect.top() - place.y()), std::abs(rect.bottom() - place.y()));
  return {std::hypot(farX, farY), std::hypot(x, y)};
}

// Labels keep out of small figures, and off the lines of large ones.
bool covers(const QRectF& label, const Figure& figure, const QRect& view) {
  if (figure.reach() <= 32) return label.intersects(figure.bounds());
  if (figure.shape != Figure::Shape::Circle) {
    for (const QRect& bar : barsOf(figure, figure.edge, view))
      if (label.intersects(QRectF(bar))) return true;
    return false;
  }
  const auto [farthest, nearest] = distancesTo(label, figure.centre);
  return nearest < figure.reach() - 1 && farthest > figure.half - figure.edge + 1;
}

std::vector<displayObject> scattered(int count, unsigned seed, int largest) {
  std::mt19937 random(seed);
  std::vector<displayObject> items;
  for (int i = 0; i < count; ++i) {
    displayObject item = itemOf(static_cast<int>(random() % 4), random() % 1000 / 1000.0,
                                random() % 1000 / 1000.0, 1 + static_cast<int>(random()) % largest,
                                "figure " + std::to_string(i), random() & 0xFFFFFFU);
    items.push_back(item);
  }
  return items;
}

TEST(StageOverlays, HaveLabelsThatCoverNeitherFiguresNorEachOther) {
  for (const double scale : {1.0, 2.0, 8.0})
    for (const int count : {1, 5, 30, 200})
      for (const int largest : {8, 60, 300}) {
        const auto items = scattered(count, static_cast<unsigned>(count + largest), largest);
        const OverlayLook look = lookAt(viewportOf(scale));
        QImage image = filled(look.view.size(), Qt::gray);
        StageOverlays overlays;
        drawOn(image, {sourceOf(items)}, look, overlays);
        const auto& labels = overlays.labelRects();
        for (std::size_t i = 0; i < labels.size(); ++i) {
          EXPECT_TRUE(look.view.contains(labels[i]));
          for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(labels[i].intersects(labels[j]));
          for (const displayObject& item : items)
            if (const auto figure = figureOf(item, look)) {
              EXPECT_FALSE(covers(QRectF(labels[i]), *figure, look.view)) << scale << " " << count;
            }
        }
        if (count <= 5 && scale > 1) {
          EXPECT_GE(labels.size(), static_cast<std::size_t>(count) / 2 + 1);
        }
      }
}

// Of white letters on a dark box.
std::pair<int, int> brightnessIn(const QImage& image, const QRect& rect) {
  int least = 255, most = 0;
  for (int y = rect.top(); y <= rect.bottom(); ++y)
    for (int x = rect.left() + rect.height() / 2; x <= rect.right(); ++x) {
      least = std::min(least, qGray(image.pixel(x, y)));
      most = std::max(most, qGray(image.pixel(x, y)));
    }
  return {least, most};
}

TEST(StageOverlays, HaveLabelsThatCanBeReadOnAnyPicture) {
  const OverlayLook look = lookAt(viewportOf(2));
  for (const QImage& background : {filled({640, 480}, Qt::white), filled({640, 480}, Qt::black),
                                   filled({640, 480}, QColor(0, 0, 0xC8)), noise({640, 480})}) {
    QImage image = background;
    StageOverlays overlays;
    drawOn(image, {sourceOf({itemOf(0, 0.5, 0.5, 20, "IIII MMMM")})}, look, overlays);
    ASSERT_EQ(overlays.labelRects().size(), 1u);
    const auto [least, most] = brightnessIn(image, overlays.labelRects()[0]);
    EXPECT_GE(most - least, 150);
    EXPECT_GE(most, 220);
  }
}

TEST(StageOverlays, KeepTextsUprightInATurnedAndMirroredPicture) {
  const displayObject item = itemOf(0, 0.5, 0.5, 20, "Just so");
  const OverlayLook straight = lookAt(viewportOf(2, {240, 240}));
  StageOverlays overlays;
  QImage image = filled(straight.view.size(), Qt::white);
  drawOn(image, {sourceOf({item})}, straight, overlays);
  const QImage label = image.copy(overlays.labelRects().at(0));
  for (const int quarters : {1, 2, 3})
    for (const bool mirrored : {false, true}) {
      Viewport viewport = viewportOf(2, {240, 240});
      viewport.turn(quarters);
      viewport.setMirrored(mirrored);
      image.fill(Qt::white);
      drawOn(image, {sourceOf({item})}, lookAt(viewport), overlays);
      EXPECT_EQ(image.copy(overlays.labelRects().at(0)), label) << quarters;
    }
}

TEST(StageOverlays, DrawTextsWithoutFigures) {
  const OverlayLook look = lookAt(viewportOf(2));
  displayObject item = itemOf(7, 0.25, 0.5, 50, "text");
  StageOverlays overlays;
  QImage image = filled(look.view.size(), Qt::white);
  drawOn(image, {sourceOf({item})}, look, overlays);
  ASSERT_EQ(overlays.labelRects().size(), 1u);
  EXPECT_EQ(inked(image), overlays.labelRects()[0]);
  EXPECT_NEAR(overlays.labelRects()[0].left(), 160, 10);
  EXPECT_NEAR(overlays.labelRects()[0].center().y(), 240, 2);
  item.x = 1.01;
  EXPECT_TRUE(inked(drawn({sourceOf({item})}, look)).isNull());
}

TEST(StageOverlays, LeaveOutHiddenSources) {
  const OverlayLook look = lookAt(viewportOf(2));
  const Moment::Source shown = sourceOf({itemOf(2, 0.25, 0.5, 20, "shown")}, "a");
  Moment::Source hidden = sourceOf({itemOf(2, 0.75, 0.5, 20, "hidden")}, "b");
  EXPECT_NE(drawn({shown, hidden}, look), drawn({shown}, look));
  hidden.isHidden = true;
  EXPECT_EQ(drawn({shown, hidden}, look), drawn({shown}, look));
}

TEST(StageOverlays, DrawOldFiguresFainterTheOlderTheyAreWithTheirAge) {
  const OverlayLook look = lookAt(viewportOf(2));
  Moment::Source source = sourceOf({itemOf(2, 0.25, 0.5, 40, "mark 42", 0)});
  const QPoint onLine(160 - 40 - 1, 240);
  StageOverlays overlays;
  QImage image = filled(look.view.size(), Qt::white);
  const auto draw = [&](std::int64_t age, bool isOld) {
    source.age = age;
    source.isOld = isOld;
    image.fill(Qt::white);
    drawOn(image, {source}, look, overlays);
    return qGray(image.pixel(onLine));
  };
  const int young = draw(400000, false);
  const int width = overlays.labelRects().at(0).width();
  EXPECT_EQ(young, 0);
  const int old = draw(700000, true);
  EXPECT_GT(old, young + 30);
  EXPECT_GT(overlays.labelRects().at(0).width(), width);
  const int older = draw(1500000, true);
  EXPECT_GT(older, old + 30);
  // But never so faint that it can't be seen.
  EXPECT_LE(draw(1000000000000, true), 160);
}

TEST(StageOverlays, SayTheAgeOfFiguresWithoutATextToo) {
  const OverlayLook look = lookAt(viewportOf(2));
  Moment::Source source = sourceOf({itemOf(2, 0.25, 0.5, 40)});
  StageOverlays overlays;
  QImage image = filled(look.view.size(), Qt::white);
  drawOn(image, {source}, look, overlays);
  EXPECT_TRUE(overlays.labelRects().empty());
  source.isOld = true;
  source.age = 2300000;
  drawOn(image, {source}, look, overlays);
  EXPECT_EQ(overlays.labelRects().size(), 1u);
}

TEST(StageOverlays, DrawAThousandFiguresWithAllThatHaveRoomForALabel) {
  const OverlayLook look = lookAt(viewportOf(4));
  const auto items = scattered(1000, 3, 4);
  StageOverlays overlays;
  QImage image = filled(look.view.size(), Qt::gray);
  drawOn(image, {sourceOf(items)}, look, overlays);
  EXPECT_GT(overlays.labelRects().size(), 200u);
  // Again, the same.
  QImage second = filled(look.view.size(), Qt::gray);
  drawOn(second, {sourceOf(items)}, look, overlays);
  EXPECT_EQ(image, second);
}

TEST(StageOverlays, CutTextsThatAreWiderThanTheView) {
  const OverlayLook look = lookAt(viewportOf(4));
  StageOverlays overlays;
  QImage image = filled(look.view.size(), Qt::gray);
  drawOn(image, {sourceOf({itemOf(0, 0.1, 0.5, 20, std::string(1024, 'M'))})}, look, overlays);
  ASSERT_EQ(overlays.labelRects().size(), 1u);
  EXPECT_LT(overlays.labelRects()[0].width(), look.view.width() / 2);
}

TEST(StageOverlays, AreAsSharpOnAScreenOfTwiceThePixels) {
  OverlayLook look = lookAt(viewportOf(2));
  const displayObject item = itemOf(2, 0.5, 0.5, 20, "text");
  StageOverlays overlays;
  QImage image = filled(look.view.size(), Qt::white);
  drawOn(image, {sourceOf({item})}, look, overlays);
  const QSize single = overlays.labelRects().at(0).size();
  look.pixelRatio = 2;
  drawOn(image, {sourceOf({item})}, look, overlays);
  const QRect twice = overlays.labelRects().at(0);
  EXPECT_EQ(twice.size(), single * 2);
  // Box and letters fill it.
  const QRect right(twice.center().x(), twice.top(), twice.width() / 2, twice.height());
  EXPECT_LT(brightnessIn(image, right).first, 100);
  EXPECT_GT(brightnessIn(image, right).second, 200);
}

// As the stage's widget paints: its pixels are two of the device's.
TEST(StageOverlays, StandWhereTheyBelongOnAScaledDevice) {
  const OverlayLook look = lookAt(viewportOf(2));
  const Moment::Source source = sourceOf({itemOf(2, 0.25, 0.5, 20, "text")});
  QImage image = filled(look.view.size(), Qt::white);
  image.setDevicePixelRatio(2);
  QPainter painter(&image);
  painter.scale(0.5, 0.5);
  StageOverlays overlays;
  overlays.paint(painter, {source}, look);
  painter.end();
  image.setDevicePixelRatio(1);
  EXPECT_EQ(image, drawn({source}, look));
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/grid.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace {

constexpr QSize kPicture(320, 240);

QImage gridOn(const QColor& background, double scale) {
  Viewport viewport;
  viewport.setPicture(kPicture);
  viewport.setView({640, 480});
  viewport.zoomTo(scale, {320, 240});
  QImage image(640, 480, QImage::Format_RGB32);
  image.fill(background);
  QPainter painter(&image);
  paintGrid(painter, viewport);
  return image;
}

// How many of the pixels of a row differ from the background.
int marksInRow(const QImage& image, int row, const QColor& background) {
  int marks = 0;
  for (int x = 0; x < image.width(); ++x) marks += image.pixelColor(x, row) != background ? 1 : 0;
  return marks;
}

TEST(Grid, ReadsOnEveryBackground) {
  for (const QColor& background : {QColor(Qt::black), QColor(Qt::white), QColor(128, 128, 128)}) {
    const QImage image = gridOn(background, 2);
    // Nine lines, each of a dark and a light pixel, one of which may not show.
    EXPECT_GE(marksInRow(image, 10, background), 9) << background.name().toStdString();
  }
}

TEST(Grid, HasItsMiddleLinesInTheMiddle) {
  const QImage image = gridOn(Qt::black, 2);
  EXPECT_GT(qGray(image.pixel(321, 10)), 150);
  EXPECT_GT(qGray(image.pixel(10, 241)), 150);
  EXPECT_LT(qGray(image.pixel(65, 10)), 120);
  EXPECT_GT(qGray(image.pixel(65, 10)), 60);
}

TEST(Grid, ShowsThePixelsWhereTheyAreLarge) {
  const int few = marksInRow(gridOn(Qt::black, 8), 100, Qt::black);
  const int many = marksInRow(gridOn(Qt::black, 16), 100, Qt::black);
  EXPECT_LT(few, 10);
  EXPECT_GE(many, 39);
}

TEST(Grid, LeavesWhatIsBesideThePictureAlone) {
  Viewport viewport;
  viewport.setPicture(kPicture);
  viewport.setView({640, 640});
  QImage image(640, 640, QImage::Format_RGB32);
  image.fill(Qt::black);
  QPainter painter(&image);
  paintGrid(painter, viewport);
  EXPECT_EQ(marksInRow(image, 20, Qt::black), 0);
}

}  // namespace

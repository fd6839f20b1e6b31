// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_canvas.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include "frames.h"
#include "viewer/stage/frame_picture.h"

namespace {

struct Canvas {
  explicit Canvas(QSize size = {640, 480}, Frame frame = markedFrame({320, 240})) {
    widget.resize(size);
    widget.show();
    show(std::move(frame));
  }
  void show(Frame frame) {
    Moment::Shown shown;
    shown.frame = shared(std::move(frame));
    widget.setShown(std::move(shown));
  }
  QImage image() { return widget.grab().toImage(); }
  Viewport& viewport() { return widget.scene().viewport(); }
  void wheel(QPointF at, int delta) {
    QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, delta}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
  }

  StageCanvas widget;
};

TEST(StageCanvas, ShowsThePictureAsItIsAtOneToOne) {
  Canvas canvas;
  canvas.widget.zoomTo(1);
  const QImage image = canvas.image();
  const QImage picture = pictureOf(markedFrame({320, 240}));
  EXPECT_EQ(image.copy(160, 120, 320, 240).convertToFormat(QImage::Format_RGB32), picture);
  EXPECT_EQ(image.pixel(159, 200), 0xff000000);
}

TEST(StageCanvas, ZoomsWithTheWheelAroundThePointer) {
  Canvas canvas;
  const QPointF at(500, 100);
  const QPointF before = canvas.viewport().toPicture().map(at);
  canvas.wheel(at, 480);
  EXPECT_GT(canvas.viewport().scale(), 4);
  EXPECT_LT((canvas.viewport().toPicture().map(at) - before).manhattanLength(), 1);
}

TEST(StageCanvas, StopsAtOneToOneWhenTheWheelGoesPastIt) {
  Canvas canvas({200, 150});
  EXPECT_LT(canvas.viewport().scale(), 1);
  for (int i = 0; i < 20 && canvas.viewport().scale() < 1; ++i) canvas.wheel({100, 75}, 120);
  EXPECT_DOUBLE_EQ(canvas.viewport().scale(), 1);
}

TEST(StageCanvas, MovesThePictureWithThePointerThatDragsIt) {
  Canvas canvas;
  canvas.widget.zoomTo(8);
  const QPointF held = canvas.viewport().toPicture().map(QPointF(300, 200));
  QTest::mousePress(&canvas.widget, Qt::LeftButton, {}, {300, 200});
  QTest::mouseMove(&canvas.widget, {260, 230});
  QTest::mouseRelease(&canvas.widget, Qt::LeftButton, {}, {260, 230});
  const QPointF now = canvas.viewport().toPicture().map(QPointF(260, 230));
  EXPECT_LT((now - held).manhattanLength(), 0.3);
  QTest::mouseMove(&canvas.widget, {100, 100});
  EXPECT_EQ(canvas.viewport().toPicture().map(QPointF(260, 230)), now);
}

TEST(StageCanvas, SaysWhichPixelIsPointedAt) {
  Canvas canvas;
  QTest::mouseMove(&canvas.widget, {100, 60});
  EXPECT_EQ(canvas.widget.pointedPixel(), QPoint(50, 30));
  canvas.widget.resize(640, 600);
  QTest::mouseMove(&canvas.widget, {100, 10});
  EXPECT_EQ(canvas.widget.pointedPixel(), std::nullopt);
}

TEST(StageCanvas, IsPointedAtWithoutAMouseToo) {
  Canvas canvas;
  canvas.widget.movePointed({1, 0});
  EXPECT_EQ(canvas.widget.pointedPixel(), QPoint(161, 120));
  canvas.widget.movePointed({-1000, 1000});
  EXPECT_EQ(canvas.widget.pointedPixel(), QPoint(0, 239));
}

TEST(StageCanvas, CountsEachPictureOnce) {
  Canvas canvas;
  QSignalSpy painted(&canvas.widget, &StageCanvas::painted);
  Frame frame = markedFrame({320, 240});
  frame.number = 1;
  canvas.show(frame);
  canvas.image();
  canvas.image();
  EXPECT_EQ(canvas.widget.framesPainted(), 1U);
  frame.number = 2;
  canvas.show(frame);
  canvas.image();
  EXPECT_EQ(canvas.widget.framesPainted(), 1U)
      << "the same again, as a slow camera's robot sends it";
  frame.number = 3;
  frame.timestamp = 1;
  canvas.show(frame);
  canvas.image();
  EXPECT_EQ(canvas.widget.framesPainted(), 2U);
  EXPECT_EQ(painted.size(), 3);
}

TEST(StageCanvas, IsBlackWithoutAPicture) {
  Canvas canvas;
  canvas.widget.setShown({});
  EXPECT_EQ(canvas.image().pixel(320, 240), 0xff000000);
}

TEST(StageCanvas, ShowsTheHistogramOnDemand) {
  Canvas canvas({640, 480}, plainFrame({320, 240}, 200));
  const QRgb plain = canvas.image().pixel(500, 400);
  canvas.widget.setHistogramShown(true);
  EXPECT_LT(qGray(canvas.image().pixel(500, 350)), qGray(plain));
  canvas.widget.setHistogramShown(false);
  EXPECT_EQ(canvas.image().pixel(500, 350), plain);
}

}  // namespace

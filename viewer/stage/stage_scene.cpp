// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_scene.h"

#include <QPainter>
#include <QRegion>
#include <utility>

#include "viewer/stage/frame_picture.h"
#include "viewer/stage/grid.h"

void StageScene::show(Moment::Shown shown) {
  const bool isAnother = shown.frame != fShown.frame;
  fShown = std::move(shown);
  if (!isAnother) return;
  fPicture = QImage();
  fViewport.setPicture(frame() ? QSize(frame()->width, frame()->height) : QSize());
}

const QImage& StageScene::picture() {
  if (fPicture.isNull() && frame()) fPicture = pictureOf(*frame());
  return fPicture;
}

void StageScene::paint(QPainter& painter) {
  const QRect view(QPoint(0, 0), fViewport.view());
  const QRect covered = fViewport.pictureRect().toAlignedRect().adjusted(1, 1, -1, -1);
  for (const QRect& free : QRegion(view) - (frame() ? covered : QRect()))
    painter.fillRect(free, Qt::black);
  if (!frame()) return;
  fPainter.paint(painter, picture(), fViewport);
  if (fLook.grid) paintGrid(painter, fViewport);
  if (fLook.overlays) paintOverlays(painter);
}

void StageScene::paintOverlays(QPainter& painter) {
  const QRect view(QPoint(0, 0), fViewport.view());
  painter.save();
  fOverlays.paint(painter, fShown.sources,
                  {fViewport.picture(), fViewport.toView(), view, fLook.font, fLook.pixelRatio});
  painter.restore();
}

QImage StageScene::painted(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  if (image.isNull()) return image;
  QPainter painter(&image);
  paint(painter);
  return image;
}

QImage StageScene::image(bool withOverlays) {
  const bool before = std::exchange(fLook.overlays, fLook.overlays && withOverlays);
  QImage result = painted(fViewport.view());
  fLook.overlays = before;
  return result;
}

QImage StageScene::imageOf(QSize size) {
  const QSize more = fViewport.view() - size;
  const bool isNearly =
      more.width() >= 0 && more.width() <= 1 && more.height() >= 0 && more.height() <= 1;
  if (isNearly) return painted(size);
  const Viewport before = fViewport;
  fViewport.setView(size);
  QImage result = painted(size);
  fViewport = before;
  return result;
}

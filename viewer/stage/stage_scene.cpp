// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_scene.h"

#include <QPainter>
#include <QRegion>

#include "viewer/stage/frame_picture.h"
#include "viewer/stage/grid.h"

void StageScene::setFrame(FramePtr frame) {
  if (frame == fFrame) return;
  fFrame = std::move(frame);
  fPicture = QImage();
  fViewport.setPicture(fFrame ? QSize(fFrame->width, fFrame->height) : QSize());
}

const QImage& StageScene::picture() {
  if (fPicture.isNull() && fFrame) fPicture = pictureOf(*fFrame);
  return fPicture;
}

void StageScene::paint(QPainter& painter) {
  const QRect view(QPoint(0, 0), fViewport.view());
  const QRect covered = fViewport.pictureRect().toAlignedRect().adjusted(1, 1, -1, -1);
  for (const QRect& free : QRegion(view) - (fFrame ? covered : QRect()))
    painter.fillRect(free, Qt::black);
  if (!fFrame) return;
  fPainter.paint(painter, picture(), fViewport);
  if (fLook.grid) paintGrid(painter, fViewport);
}

QImage StageScene::image(bool withOverlays) {
  QImage image(fViewport.view(), QImage::Format_RGB32);
  if (image.isNull()) return image;
  const bool before = std::exchange(fLook.overlays, fLook.overlays && withOverlays);
  QPainter painter(&image);
  paint(painter);
  fLook.overlays = before;
  return image;
}

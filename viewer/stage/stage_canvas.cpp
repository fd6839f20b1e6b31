// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_canvas.h"

#include <QPainter>

#include "viewer/stage/frame_picture.h"

StageCanvas::StageCanvas(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void StageCanvas::show(FramePtr frame) {
  fFrame = std::move(frame);
  fPicture = fFrame ? pictureOf(*fFrame) : QImage();
  fViewport.setPicture(fPicture.size());
  update();
}

void StageCanvas::resizeEvent(QResizeEvent*) {
  fViewport.setView(size() * devicePixelRatio());
}

void StageCanvas::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::black);
  if (fPicture.isNull()) return;
  painter.scale(1 / devicePixelRatio(), 1 / devicePixelRatio());
  painter.setTransform(fViewport.toView(), true);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, !fViewport.isExact());
  painter.drawImage(0, 0, fPicture);
  if (fFrame->number != fPaintedNumber) ++fFramesPainted;
  fPaintedNumber = fFrame->number;
}

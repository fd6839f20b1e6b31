// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_canvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "viewer/stage/gl_surface.h"
#include "viewer/stage/histogram.h"

namespace {

constexpr double kWheelFactor = 1.2;  // a notch
constexpr double kNotch = 120;        // eighths of a degree

// Stops at 1:1 where a step would leave it out.
double steppedScale(double scale, double factor) {
  const double next = scale * factor;
  return (scale < 1 && next > 1) || (scale > 1 && next < 1) ? 1 : next;
}

}  // namespace

StageCanvas::StageCanvas(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setMinimumSize(160, 120);
  fScene.look().font = font();
  setAccessibleName(tr("Camera picture, large"));
  if (GlSurface::isWorthwhile())
    fSurface = new GlSurface([this](QPainter& painter) { paint(painter); }, this);
}

void StageCanvas::setShown(Moment::Shown shown) {
  fScene.show(std::move(shown));
  refresh();
}

// ---- looking

QPointF StageCanvas::zoomMiddle() const {
  const bool isOverPicture =
      fPointer && fScene.viewport().pictureRect().contains(toDevice(*fPointer));
  return toDevice(isOverPicture ? *fPointer : QPointF(width() / 2.0, height() / 2.0));
}

void StageCanvas::noteView() {
  if (fPointer) pointAt(*fPointer);
  refresh();
  emit viewChanged();
}

void StageCanvas::zoomBy(double factor) {
  zoomTo(steppedScale(fScene.viewport().scale(), factor));
}

void StageCanvas::zoomTo(double scale) {
  fScene.viewport().zoomTo(scale, zoomMiddle());
  noteView();
}

void StageCanvas::fit() {
  fScene.viewport().fit();
  noteView();
}

void StageCanvas::panBy(double right, double down) {
  const QSizeF view = fScene.viewport().view();
  fScene.viewport().panBy({-right * view.width(), -down * view.height()});
  noteView();
}

void StageCanvas::turn(int quarters) {
  fScene.viewport().turn(quarters);
  noteView();
}

void StageCanvas::setMirrored(bool mirrored) {
  fScene.viewport().setMirrored(mirrored);
  noteView();
}

void StageCanvas::restoreView(const Viewport::State& state) {
  fScene.viewport().setState(state);
  noteView();
}

void StageCanvas::setHistogramShown(bool shown) {
  fHistogramShown = shown;
  refresh();
}

void StageCanvas::movePointed(QPoint distance) {
  const QSize picture = fScene.viewport().picture();
  if (picture.isEmpty()) return;
  const QPoint from = fPointed.value_or(QPoint(picture.width() / 2, picture.height() / 2));
  const QPoint to = from + distance;
  fPointed = QPoint(std::clamp(to.x(), 0, picture.width() - 1),
                    std::clamp(to.y(), 0, picture.height() - 1));
  refresh();
  emit pointed();
}

void StageCanvas::pointAt(QPointF position) {
  const QPointF at = fScene.viewport().toPicture().map(toDevice(position));
  const QPoint pixel(static_cast<int>(std::floor(at.x())), static_cast<int>(std::floor(at.y())));
  const bool isInside = QRect(QPoint(0, 0), fScene.viewport().picture()).contains(pixel);
  fPointed = isInside ? std::optional(pixel) : std::nullopt;
  emit pointed();
}

// ---- events

void StageCanvas::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) fScene.look().font = font();
  QWidget::changeEvent(event);
}

void StageCanvas::resizeEvent(QResizeEvent*) {
  if (fSurface != nullptr) fSurface->resize(size());
  fScene.look().pixelRatio = devicePixelRatioF();
  fScene.viewport().setView((QSizeF(size()) * devicePixelRatioF()).toSize());
  noteView();
}

void StageCanvas::wheelEvent(QWheelEvent* event) {
  const double notches = event->angleDelta().y() / kNotch;
  fPointer = event->position();
  if (notches != 0) zoomBy(std::pow(kWheelFactor, notches));
  event->accept();
}

void StageCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton)
    return QWidget::mousePressEvent(event);
  fDragFrom = event->position();
  if (!fScene.viewport().isFitted()) setCursor(Qt::ClosedHandCursor);
}

void StageCanvas::mouseMoveEvent(QMouseEvent* event) {
  fPointer = event->position();
  if (fDragFrom) {
    fScene.viewport().panBy(toDevice(event->position() - *fDragFrom));
    fDragFrom = event->position();
    noteView();
  } else {
    pointAt(event->position());
  }
}

void StageCanvas::mouseReleaseEvent(QMouseEvent*) {
  fDragFrom.reset();
  unsetCursor();
}

void StageCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit doubleClicked();
}

void StageCanvas::leaveEvent(QEvent*) {
  fPointer.reset();
  fPointed.reset();
  emit pointed();
}

// ---- painting

void StageCanvas::refresh() {
  QWidget& painted = fSurface != nullptr ? static_cast<QWidget&>(*fSurface) : *this;
  painted.update();
}

void StageCanvas::paintEvent(QPaintEvent*) {
  if (fSurface != nullptr) return;
  QPainter painter(this);
  paint(painter);
}

void StageCanvas::paint(QPainter& painter) {
  painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
  fScene.paint(painter);
  if (fHistogramShown && fScene.frame()) paintHistogramBox(painter);
  countFrame();
}

void StageCanvas::paintHistogramBox(QPainter& painter) {
  const double unit = devicePixelRatioF();
  const QSizeF view = fScene.viewport().view();
  const QSizeF size(std::min(280 * unit, view.width() - 16 * unit),
                    std::min(140 * unit, view.height() / 2));
  const QPointF corner(view.width() - size.width() - 8 * unit,
                       view.height() - size.height() - 8 * unit);
  paintHistogram(painter, histogramOf(*fScene.frame(), fScene.picture()), QRectF(corner, size));
}

void StageCanvas::countFrame() {
  if (!fScene.frame() || fScene.frame()->number == fPaintedNumber) return;
  fPaintedNumber = fScene.frame()->number;
  if (fPaintedTimestamp != fScene.frame()->timestamp) {
    fPaintedTimestamp = fScene.frame()->timestamp;
    ++fFramesPainted;
    fLastPainted = std::chrono::steady_clock::now();
  }
  emit painted();
}

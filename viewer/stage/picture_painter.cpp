// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/picture_painter.h"

#include <QPaintEngine>
#include <QPainter>
#include <opencv2/imgproc.hpp>

namespace {

QImage turned(const QImage& picture, const Viewport& viewport) {
  QImage result = picture;
  if (viewport.quarters() != 0)
    result = result.transformed(QTransform().rotate(90 * viewport.quarters()));
  return viewport.isMirrored() ? result.mirrored(true, false) : result;
}

// The pixels that are needed for what is seen, and one more around them for what is in between.
QRect partSeen(QSize picture, const QRectF& shown, const QRectF& view) {
  const QRectF seen = shown & view;
  const double x = picture.width() / shown.width();
  const double y = picture.height() / shown.height();
  const QRectF part((seen.left() - shown.left()) * x, (seen.top() - shown.top()) * y,
                    seen.width() * x, seen.height() * y);
  return part.toAlignedRect().adjusted(-1, -1, 1, 1) & QRect({0, 0}, picture);
}

QRect placeOf(const QRect& part, QSize picture, const QRectF& shown) {
  const double x = shown.width() / picture.width();
  const double y = shown.height() / picture.height();
  const QRectF place(shown.left() + part.left() * x, shown.top() + part.top() * y, part.width() * x,
                     part.height() * y);
  return {place.topLeft().toPoint(), place.bottomRight().toPoint() - QPoint(1, 1)};
}

cv::Mat wrapped(const QImage& image, uchar* bits) {
  return {image.height(), image.width(), CV_8UC4, bits,
          static_cast<std::size_t>(image.bytesPerLine())};
}

QImage scaled(const QImage& picture, const QRect& part, QSize size) {
  QImage result(size, QImage::Format_RGB32);
  if (result.isNull()) return result;
  // Only read.
  const cv::Mat from = wrapped(picture, const_cast<uchar*>(picture.constBits()));
  cv::Mat to = wrapped(result, result.bits());
  const bool isReduced = size.width() < part.width();
  cv::resize(from(cv::Rect(part.x(), part.y(), part.width(), part.height())), to, to.size(), 0, 0,
             isReduced ? cv::INTER_AREA : cv::INTER_LINEAR);
  return result;
}

// A graphics processor enlarges for nothing. It looks at four pixels for each one that it paints,
// which are too few where it reduces much.
bool scalesWell(const QPainter& painter, const Viewport& viewport) {
  return painter.paintEngine()->type() == QPaintEngine::OpenGL2 && viewport.scale() >= 0.5;
}

}  // namespace

void PicturePainter::paint(QPainter& painter, const QImage& picture, const Viewport& viewport) {
  if (picture.isNull() || viewport.view().isEmpty()) return;
  const bool isExact = viewport.isExact();
  if (!isExact && !scalesWell(painter, viewport)) return paintSmooth(painter, picture, viewport);
  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, !isExact);
  painter.setTransform(viewport.toView(), true);
  painter.drawImage(0, 0, picture);
  painter.restore();
}

void PicturePainter::paintSmooth(QPainter& painter, const QImage& picture,
                                 const Viewport& viewport) {
  const QRectF shown = viewport.pictureRect();
  const QSize upright = viewport.quarters() % 2 == 0 ? picture.size() : picture.size().transposed();
  const QRect part = partSeen(upright, shown, QRectF(QPointF(0, 0), QSizeF(viewport.view())));
  const QRect place = placeOf(part, upright, shown);
  if (part.isEmpty() || place.isEmpty()) return;
  const Key key{picture.cacheKey(), viewport.quarters(), viewport.isMirrored(), part, place.size()};
  if (key != fKey || fScaled.isNull()) fScaled = scaled(turned(picture, viewport), part, key.size);
  fKey = key;
  painter.drawImage(place.topLeft(), fScaled);
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/recording_picture.h"

#include <QPainter>
#include <QPainterPath>

namespace {

void paintTriangle(QPainter& painter, const QRectF& place, const QColor& colour) {
  QPainterPath path;
  const double size = place.height() / 4;
  const QPointF middle = place.center();
  path.moveTo(middle + QPointF(-0.45 * size, -0.6 * size));
  path.lineTo(middle + QPointF(0.65 * size, 0));
  path.lineTo(middle + QPointF(-0.45 * size, 0.6 * size));
  path.closeSubpath();
  painter.fillPath(path, colour);
}

// That it is a film, on a picture of any colour.
void paintFilmSign(QPainter& painter, const QRectF& place) {
  const double radius = place.height() / 5;
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 140));
  painter.drawEllipse(place.center(), radius, radius);
  paintTriangle(painter, place, Qt::white);
}

// A photo of hills and the sun.
void paintPhotoSign(QPainter& painter, const QRectF& place, const QColor& colour) {
  const double unit = place.height() / 8;
  const QPointF foot(place.center().x(), place.center().y() + 1.5 * unit);
  QPainterPath hills;
  hills.moveTo(foot + QPointF(-2.5 * unit, 0));
  hills.lineTo(foot + QPointF(-0.8 * unit, -2.4 * unit));
  hills.lineTo(foot + QPointF(0.4 * unit, -0.9 * unit));
  hills.lineTo(foot + QPointF(1.1 * unit, -1.7 * unit));
  hills.lineTo(foot + QPointF(2.5 * unit, 0));
  hills.closeSubpath();
  painter.fillPath(hills, colour);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(foot + QPointF(1.2 * unit, -2.9 * unit), 0.6 * unit, 0.6 * unit);
}

}  // namespace

void paintRecording(QPainter& painter, const QRect& place, RecordingKind kind,
                    const QImage& thumbnail, const QColor& sign) {
  if (!thumbnail.isNull()) {
    QRect inside(QPoint(), thumbnail.size().scaled(place.size(), Qt::KeepAspectRatio));
    inside.moveCenter(place.center());
    painter.drawImage(inside, thumbnail);
    if (kind == RecordingKind::Film) paintFilmSign(painter, place);
  } else if (kind == RecordingKind::Film) {
    paintTriangle(painter, place, sign);
  } else if (kind == RecordingKind::Photo) {
    paintPhotoSign(painter, place, sign);
  }
}

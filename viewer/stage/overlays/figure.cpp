// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/figure.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kSmallView = 320;   // pixels; pictures up to twice as wide are shown so wide in it
constexpr double kSmallPart = 0.25;  // of larger pictures
constexpr double kLargestHalf = 1e12;
// Larger circles are drawn as the arc that can be seen.
constexpr double kLargestEllipse = 4000;
constexpr int kArcPoints = 96;

bool isShape(int shape) {
  return shape >= 0 && shape <= 2;
}

// Thicker for thicker items and larger pictures, but never so thin or thick that it isn't a line.
int lineWidth(const displayObject& item, const OverlayLook& look) {
  const double large = std::sqrt(look.figureScale() / look.pixelRatio) * 0.75;
  const double width = (item.thickness + 1.0) * std::clamp(large, 0.5, 2.0);
  return std::max(1, static_cast<int>(std::lround(std::clamp(width, 1.5, 8.0) * look.pixelRatio)));
}

// Whole device pixels, as far as they are in `view`; what is cut off lies out of sight.
QRect wholePixels(double left, double top, double width, double height, const QRect& view) {
  const auto cut = [](double value, int low, int high) {
    return static_cast<int>(std::lround(std::clamp<double>(value, low, high)));
  };
  const QPoint first(cut(left, view.left(), view.right() + 1),
                     cut(top, view.top(), view.bottom() + 1));
  const QPoint end(cut(left + width, view.left(), view.right() + 1),
                   cut(top + height, view.top(), view.bottom() + 1));
  return {first, QSize(end.x() - first.x(), end.y() - first.y())};
}

// One whose lines begin on a pixel.
double onPixel(double centre, double size) {
  return std::round(centre - size / 2);
}

std::vector<QRect> crossBars(const Figure& figure, int more, const QRect& view) {
  const double length = std::max<double>(2 * std::round(figure.half), figure.line) + 2 * more;
  const double width = figure.line + 2 * more;
  const double left = onPixel(figure.centre.x(), length), x = onPixel(figure.centre.x(), width);
  const double top = onPixel(figure.centre.y(), length), y = onPixel(figure.centre.y(), width);
  return {wholePixels(left, y, length, width, view), wholePixels(x, top, width, y - top, view),
          wholePixels(x, y + width, width, top + length - y - width, view)};
}

std::vector<QRect> squareBars(const Figure& figure, int more, const QRect& view) {
  const double inner = std::max(0.0, 2 * std::round(figure.half) - 2 * more);
  const double width = figure.line + 2 * more;
  const double outer = inner + 2 * width;
  const double left = onPixel(figure.centre.x(), outer), top = onPixel(figure.centre.y(), outer);
  return {wholePixels(left, top, outer, width, view),
          wholePixels(left, top + width + inner, outer, width, view),
          wholePixels(left, top + width, width, inner, view),
          wholePixels(left + width + inner, top + width, width, inner, view)};
}

// The points of a circle that may be in the view, as seen from its centre.
QPolygonF arcInView(const QPointF& centre, double radius, const QRect& view) {
  const QPointF away = QRectF(view).center() - centre;
  const double distance = std::hypot(away.x(), away.y());
  const double reach = std::hypot(view.width(), view.height());
  if (std::abs(distance - radius) > reach) return {};
  const double middle = std::atan2(away.y(), away.x());
  const double half = std::asin(std::min(1.0, reach / radius)) * 1.2;
  QPolygonF points;
  for (int i = 0; i < kArcPoints; ++i) {
    const double angle = middle + half * (2.0 * i / (kArcPoints - 1) - 1);
    points << centre + radius * QPointF(std::cos(angle), std::sin(angle));
  }
  return points;
}

void strokeCircle(QPainter& painter, const Figure& figure, double width, const QColor& colour,
                  const QRect& view) {
  painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::FlatCap));
  const double radius = figure.half + figure.line / 2.0;
  if (radius <= kLargestEllipse)
    painter.drawEllipse(figure.centre, radius, radius);
  else
    painter.drawPolyline(arcInView(figure.centre, radius, view));
}

void fillBars(QPainter& painter, const Figure& figure, int more, const QColor& colour,
              const QRect& view) {
  for (const QRect& bar : barsOf(figure, more, view))
    if (!bar.isEmpty()) painter.fillRect(bar, colour);
}

}  // namespace

double OverlayLook::figureScale() const {
  const double width = picture.width();
  const bool isSmall = width == 160 || width == 320 || width == 640;
  const double shown = isSmall ? kSmallView : width * kSmallPart;
  const double scale = std::hypot(toView.m11(), toView.m12());
  return shown > 0 ? width / shown * scale : scale;
}

double Figure::reach() const {
  return half + edge + (shape == Shape::Cross ? std::max(0.0, line / 2.0 - half) : line);
}

QRectF Figure::bounds() const {
  const double reached = std::ceil(reach());
  return {centre.x() - reached, centre.y() - reached, 2 * reached, 2 * reached};
}

std::optional<QPointF> placeOf(const displayObject& item, const OverlayLook& look) {
  const QPointF place =
      look.toView.map(QPointF(item.x * look.picture.width(), item.y * look.picture.height()));
  if (!std::isfinite(place.x()) || !std::isfinite(place.y())) return std::nullopt;
  if (std::max(std::abs(place.x()), std::abs(place.y())) > 2 * kLargestHalf) return std::nullopt;
  return place;
}

std::optional<Figure> figureOf(const displayObject& item, const OverlayLook& look) {
  const bool isNothing = item.diameter == 0 && item.thickness == 0;
  if (item.thickness < 0 || !isShape(item.shape) || isNothing) return std::nullopt;
  const auto place = placeOf(item, look);
  if (!place) return std::nullopt;
  Figure figure;
  figure.shape = static_cast<Figure::Shape>(item.shape);
  figure.centre = *place;
  figure.half =
      std::min(std::abs(static_cast<double>(item.diameter)) / 2 * look.figureScale(), kLargestHalf);
  figure.line = lineWidth(item, look);
  figure.edge = std::max(1, static_cast<int>(std::lround(look.pixelRatio)));
  figure.colour = item.colour | 0xFF000000U;
  if (!figure.bounds().intersects(look.view)) return std::nullopt;
  return figure;
}

std::vector<QRect> barsOf(const Figure& figure, int more, const QRect& view) {
  // A bar that is cut where it leaves the view must not look as if it ended there.
  const int beyond = figure.line + 2 * more;
  const QRect wide = view.adjusted(-beyond, -beyond, beyond, beyond);
  switch (figure.shape) {
    case Figure::Shape::Cross:
      return crossBars(figure, more, wide);
    case Figure::Shape::Square:
      return squareBars(figure, more, wide);
    default:
      return {};
  }
}

QColor edgeColour(QRgb colour) {
  return qGray(colour) < 128 ? QColor(255, 255, 255) : QColor(0, 0, 0);
}

void paintFigure(QPainter& painter, const Figure& figure, const QRect& view) {
  const QColor edge = edgeColour(figure.colour), colour(figure.colour);
  if (figure.shape == Figure::Shape::Circle) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    strokeCircle(painter, figure, figure.line + 2 * figure.edge, edge, view);
    strokeCircle(painter, figure, figure.line, colour, view);
  } else {
    fillBars(painter, figure, figure.edge, edge, view);
    fillBars(painter, figure, 0, colour, view);
  }
}

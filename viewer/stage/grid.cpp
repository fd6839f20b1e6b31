// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/grid.h"

#include <QLineF>
#include <QPainter>
#include <QVector>
#include <cmath>

namespace {

constexpr int kParts = 10;
constexpr double kLargePixel = 12;  // device pixels

// Upright and lying lines at these places of a picture, cut to the part of it that is seen.
class Lines {
 public:
  Lines(const QRectF& seen, const QTransform& toView) : fSeen(seen), fToView(toView) {}

  void upright(double x) {
    if (x >= fSeen.left() && x <= fSeen.right()) add(QLineF(x, fSeen.top(), x, fSeen.bottom()));
  }
  void lying(double y) {
    if (y >= fSeen.top() && y <= fSeen.bottom()) add(QLineF(fSeen.left(), y, fSeen.right(), y));
  }
  // Dark beside light: one of them differs from whatever is below.
  void paint(QPainter& painter, int strength) const {
    painter.setPen(QPen(QColor(0, 0, 0, strength), 1));
    painter.drawLines(fLines);
    painter.setPen(QPen(QColor(255, 255, 255, strength), 1));
    painter.translate(1, 1);
    painter.drawLines(fLines);
    painter.translate(-1, -1);
  }

 private:
  // On the middle of device pixels, so that it is sharp.
  void add(const QLineF& line) {
    const QLineF placed = fToView.map(line);
    const auto sharp = [](QPointF at) {
      return QPointF(std::floor(at.x()) + 0.5, std::floor(at.y()) + 0.5);
    };
    fLines.append(QLineF(sharp(placed.p1()), sharp(placed.p2())));
  }

  const QRectF fSeen;
  const QTransform fToView;
  QVector<QLineF> fLines;
};

}  // namespace

void paintGrid(QPainter& painter, const Viewport& viewport) {
  const QSizeF picture = viewport.picture();
  const QRectF view(QPointF(0, 0), QSizeF(viewport.view()));
  const QRectF seen = viewport.toPicture().mapRect(view) & QRectF(QPointF(0, 0), picture);
  if (seen.isEmpty()) return;

  if (viewport.scale() >= kLargePixel) {
    Lines pixels(seen, viewport.toView());
    for (double x = std::ceil(seen.left()); x <= seen.right(); ++x) pixels.upright(x);
    for (double y = std::ceil(seen.top()); y <= seen.bottom(); ++y) pixels.lying(y);
    pixels.paint(painter, 40);
  }
  Lines parts(seen, viewport.toView());
  Lines middle(seen, viewport.toView());
  for (int i = 1; i < kParts; ++i) {
    Lines& lines = 2 * i == kParts ? middle : parts;
    lines.upright(picture.width() * i / kParts);
    lines.lying(picture.height() * i / kParts);
  }
  parts.paint(painter, 90);
  middle.paint(painter, 200);
}

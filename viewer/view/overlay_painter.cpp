// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/overlay_painter.h"

#include <QColor>
#include <QLineF>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "viewer/view/lettering.h"
#include "viewer/view/overlay_passes.h"

namespace {

// Drawing a text over itself only darkens its soft edges, and after this many times not even that.
constexpr std::int64_t kTextRepeats = 256;
// More characters than fit between the view's edges.
constexpr std::size_t kLabelLength = 1024;

// Coordinates stay in floating point until Qt clips them, so that none is too large to convert.
QRectF outline(const displayObject& item, double centreX, double centreY, double pass) {
  const double half = item.diameter / 2;
  const double side = item.diameter + 2 * pass;
  return {std::trunc(centreX - pass - half), std::trunc(centreY - pass - half), side, side};
}

void paintCross(QPainter& painter, const displayObject& item, double centreX, double centreY,
                double pass) {
  const double half = item.diameter / 2;
  const double row = std::trunc(centreY + pass);
  const double column = std::trunc(centreX + pass);
  painter.drawLine(QLineF(std::trunc(centreX - half), row, std::trunc(centreX + half), row));
  painter.drawLine(QLineF(column, std::trunc(centreY - half), column, std::trunc(centreY + half)));
}

void paintFigure(QPainter& painter, const displayObject& item, double centreX, double centreY,
                 double pass) {
  switch (item.shape) {
    case 0:
      painter.drawEllipse(outline(item, centreX, centreY, pass));
      break;
    case 1:
      paintCross(painter, item, centreX, centreY, pass);
      break;
    case 2:
      painter.drawRect(outline(item, centreX, centreY, pass));
      break;
    default:
      break;
  }
}

void paintFigures(QPainter& painter, const displayObject& item, double centreX, double centreY,
                  const QRectF& view) {
  const auto paint = [&](std::int64_t pass) {
    // Nothing hangs down from above the picture's top edge.
    if (centreY + static_cast<double>(pass) > 0)
      paintFigure(painter, item, centreX, centreY, static_cast<double>(pass));
  };
  const auto [some, others] = touchingPasses(item, centreX, centreY, view);
  for (std::int64_t pass = some.first; pass <= some.last; ++pass) paint(pass);
  for (std::int64_t pass = others.first; pass <= others.last; ++pass)
    if (pass < some.first || pass > some.last) paint(pass);
}

// The text is drawn with every pass, at the same place.
void paintLabel(QPainter& painter, Lettering& lettering, const displayObject& item, double centreX,
                double centreY, const QRectF& view) {
  if (item.description.empty()) return;
  const QPointF baseline(std::trunc(static_cast<float>(centreX) + 5.0F),
                         std::trunc(static_cast<float>(centreY) + 5.0F));
  const double height = 2.0 * lettering.lineHeight();
  const double length = static_cast<double>(kLabelLength) * height;
  if (!view.adjusted(-length, -height, height, height).contains(baseline)) return;

  const QString text =
      QString::fromLatin1(item.description.data(),
                          static_cast<qsizetype>(std::min(item.description.size(), kLabelLength)));
  const std::int64_t repeats = std::min(drawnPasses(item.thickness, centreY), kTextRepeats);
  lettering.draw(painter, baseline, text, static_cast<int>(repeats));
}

}  // namespace

void paintOverlay(QPainter& painter, Lettering& lettering, const displayObject& item,
                  const QSizeF& pictureSize, const QRectF& view) {
  if (item.thickness < 0) return;
  painter.setPen(QPen(QColor(static_cast<QRgb>(item.colour)), 0));
  const double centreX = item.x * pictureSize.width();
  const double centreY = item.y * pictureSize.height();
  if (!std::isfinite(centreX) || !std::isfinite(centreY)) return;
  paintFigures(painter, item, centreX, centreY, view);
  paintLabel(painter, lettering, item, centreX, centreY, view);
}

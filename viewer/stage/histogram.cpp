// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/histogram.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>

#include "viewer/stage/frame_picture.h"

namespace {

constexpr int kMostColumns = 640;
constexpr int kMostRows = 480;

// A value that stands out (black borders, a lamp) shall not press all others to the ground.
double topOf(const Histogram::Counts& counts) {
  Histogram::Counts sorted = counts;
  constexpr std::size_t kOverlooked = 3;
  std::nth_element(sorted.begin(), sorted.end() - kOverlooked - 1, sorted.end());
  return std::max(1U, *(sorted.end() - kOverlooked - 1));
}

QPolygonF curveOf(const Histogram::Counts& counts, double top, const QRectF& box) {
  QPolygonF curve;
  for (std::size_t value = 0; value < counts.size(); ++value) {
    const double height = std::min(1.0, counts[value] / top);
    curve << QPointF(box.left() + static_cast<double>(value) / 255 * box.width(),
                     box.bottom() - height * box.height());
  }
  return curve;
}

}  // namespace

Histogram histogramOf(const Frame& frame, const QImage& picture) {
  Histogram result;
  const int columns = std::max(1, (frame.width + kMostColumns - 1) / kMostColumns);
  const int rows = std::max(1, (frame.height + kMostRows - 1) / kMostRows);
  for (int y = 0; y < frame.height; y += rows) {
    const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    for (int x = 0; x < frame.width; x += columns) {
      ++result.luminance[static_cast<std::size_t>(yuvAt(frame, {x, y}).y)];
      ++result.red[static_cast<std::size_t>(qRed(line[x]))];
      ++result.green[static_cast<std::size_t>(qGreen(line[x]))];
      ++result.blue[static_cast<std::size_t>(qBlue(line[x]))];
    }
  }
  return result;
}

void paintHistogram(QPainter& painter, const Histogram& histogram, const QRectF& box) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 170));
  painter.drawRoundedRect(box, 4, 4);
  const QRectF inside = box.adjusted(6, 6, -6, -6);

  QPolygonF grey = curveOf(histogram.luminance, topOf(histogram.luminance), inside);
  grey << inside.bottomRight() << inside.bottomLeft();
  painter.setBrush(QColor(255, 255, 255, 90));
  painter.drawPolygon(grey);

  painter.setBrush(Qt::NoBrush);
  const auto draw = [&](const Histogram::Counts& counts, const QColor& colour) {
    painter.setPen(QPen(colour, 1.5));
    painter.drawPolyline(curveOf(counts, topOf(counts), inside));
  };
  draw(histogram.red, QColor(255, 90, 90));
  draw(histogram.green, QColor(90, 230, 90));
  draw(histogram.blue, QColor(110, 150, 255));
  painter.restore();
}

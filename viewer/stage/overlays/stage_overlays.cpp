// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/stage_overlays.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kSecond = 1e6;
constexpr double kFaintest = 0.5;
constexpr double kFaintestLabel = 0.75;  // which must still be read
constexpr double kLargeMark = 32;        // half of it; what is smaller leaves no room in its middle

// Full for what is not old, falling for what is, until after two seconds.
double opacityOf(const Moment::Source& source) {
  if (!source.isOld) return 1;
  const double seconds = static_cast<double>(source.age) / kSecond;
  return std::clamp(0.8 - (seconds - 0.5) * 0.25, kFaintest, 0.8);
}

void take(const Figure& figure, const OverlayLook& look, TakenCells& taken) {
  if (figure.reach() <= kLargeMark * look.pixelRatio) {
    taken.take(figure.bounds());
  } else if (figure.shape == Figure::Shape::Circle) {
    const double outer = figure.reach();
    taken.takeRing(figure.centre, outer - figure.line - 2 * figure.edge, outer);
  } else {
    for (const QRect& bar : barsOf(figure, figure.edge, look.view)) taken.take(QRectF(bar));
  }
}

// From a label that stands apart to its mark.
void paintLeader(QPainter& painter, const QRect& label, const QPointF& mark, double pixelRatio) {
  const QPointF from(std::clamp<double>(mark.x(), label.left(), label.right() + 1),
                     std::clamp<double>(mark.y(), label.top(), label.bottom() + 1));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(16, 16, 16, 200), 3 * pixelRatio));
  painter.drawLine(from, mark);
  painter.setPen(QPen(Qt::white, pixelRatio));
  painter.drawLine(from, mark);
}

}  // namespace

void StageOverlays::paint(QPainter& painter, const std::vector<Moment::Source>& sources,
                          const OverlayLook& look) {
  fLabels.clear();
  fWishes.clear();
  fLabelPictures.begin(look.font, look.pixelRatio);
  TakenCells taken(look.view);
  painter.save();
  painter.setClipRect(look.view, Qt::IntersectClip);
  for (const Moment::Source& source : sources)
    if (!source.isHidden) paintFigures(painter, source, look, taken);
  paintLabels(painter, look, taken);
  painter.restore();
}

void StageOverlays::paintFigures(QPainter& painter, const Moment::Source& source,
                                 const OverlayLook& look, TakenCells& taken) {
  const double opacity = opacityOf(source);
  const std::int64_t age = source.isOld ? source.age / 100000 : -1;
  const std::size_t name = std::hash<std::string>()(source.set->key);
  painter.setOpacity(opacity);
  for (std::size_t i = 0; i < source.set->items.size(); ++i) {
    const displayObject& item = source.set->items[i];
    const auto place = placeOf(item, look);
    if (!place || item.thickness < 0) continue;
    const auto figure = figureOf(item, look);
    if (figure) {
      fFigurePictures.draw(painter, *figure, look.view);
      take(*figure, look, taken);
    } else if (!QRectF(look.view).contains(*place)) {
      continue;
    }
    LabelPictures::Label& label = fLabelPictures.of(item.description, age, item.colour);
    if (label.size.isEmpty()) continue;
    fLabels.push_back({&label, std::max(opacity, kFaintestLabel), *place});
    fWishes.push_back({name + i, figure ? figure->bounds() : QRectF(*place, QSizeF()), label.size});
  }
}

void StageOverlays::paintLabels(QPainter& painter, const OverlayLook& look, TakenCells& taken) {
  const int gap = std::max(TakenCells::kCell, static_cast<int>(std::lround(4 * look.pixelRatio)));
  const std::vector<LabelPlace> places = fLabelPlaces.place(fWishes, taken, gap);
  for (std::size_t i = 0; i < places.size(); ++i)
    if (places[i].isFar) {
      painter.setOpacity(fLabels[i].opacity);
      paintLeader(painter, places[i].rect, fLabels[i].mark, look.pixelRatio);
    }
  fLabelRects.clear();
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (places[i].rect.isNull()) continue;
    painter.setOpacity(fLabels[i].opacity);
    painter.drawImage(places[i].rect.topLeft(), fLabelPictures.pictureOf(*fLabels[i].label));
    fLabelRects.push_back(places[i].rect);
  }
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/label_places.h"

#include <array>
#include <cmath>

namespace {

// A side of the mark, or a corner: -1 left or above, 1 right or below, 0 in the middle.
struct Side {
  int x;
  int y;
};

constexpr std::array<Side, 8> kSides{
    {{1, 0}, {-1, 0}, {0, -1}, {0, 1}, {1, -1}, {1, 1}, {-1, -1}, {-1, 1}}};
constexpr int kBeside = 8;
constexpr int kInside = 2;  // of a large mark: at the bottom, at the top
constexpr int kNear = kBeside + kInside;
constexpr int kPlaces = kNear + kBeside;
// As much of a circle's box as is surely in the circle.
constexpr double kInnerPart = 0.7;

double along(double low, double high, double size, int side, double gap) {
  if (side < 0) return low - gap - size;
  return side > 0 ? high + gap : (low + high - size) / 2;
}

QRect beside(const QRectF& mark, const QSize& size, Side side, double gap) {
  return {QPoint(static_cast<int>(
                     std::lround(along(mark.left(), mark.right(), size.width(), side.x, gap))),
                 static_cast<int>(
                     std::lround(along(mark.top(), mark.bottom(), size.height(), side.y, gap)))),
          size};
}

QRect inside(const QRectF& mark, const QRectF& view, const QSize& size, bool isAtTop) {
  const QSizeF inner = mark.size() * kInnerPart;
  QRectF room(QPointF(), inner);
  room.moveCenter(mark.center());
  room &= view;
  if (room.width() < size.width() || room.height() < 2 * size.height()) return {};
  const double y = isAtTop ? room.top() : room.bottom() - size.height();
  const double x = room.center().x() - size.width() / 2.0;
  return {QPoint(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))), size};
}

// The place of this number; null where there is none.
QRect rectOf(const LabelWish& wish, int number, const QRect& view, int gap) {
  const QRectF seen = wish.mark & QRectF(view);
  const QRectF mark = wish.mark.isEmpty() ? wish.mark : seen;
  if (number < kBeside) return beside(mark, wish.size, kSides[number], gap);
  if (number < kNear) return inside(wish.mark, view, wish.size, number > kBeside);
  return beside(mark, wish.size, kSides[number - kNear], gap + 1.5 * wish.size.height());
}

}  // namespace

std::vector<LabelPlace> LabelPlaces::place(const std::vector<LabelWish>& wishes, TakenCells& taken,
                                           int gap) {
  std::vector<LabelPlace> places(wishes.size());
  std::unordered_map<std::size_t, int> now;
  now.reserve(wishes.size());
  const auto take = [&](std::size_t i, int number) {
    const QRect rect = rectOf(wishes[i], number, taken.view(), gap);
    if (rect.isEmpty() || !taken.isFree(rect)) return false;
    taken.take(rect);
    places[i] = {rect, number >= kNear};
    now[wishes[i].name] = number;
    return true;
  };
  // Whoever stood near goes first, so that nobody takes its place.
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    const auto last = fLast.find(wishes[i].name);
    if (last != fLast.end() && last->second < kNear) take(i, last->second);
  }
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    if (!places[i].rect.isNull()) continue;
    const auto last = fLast.find(wishes[i].name);
    for (int number = 0; number < kPlaces; ++number) {
      if (number == kNear && last != fLast.end() && last->second >= kNear && take(i, last->second))
        break;
      if (take(i, number)) break;
    }
  }
  fLast = std::move(now);
  return places;
}

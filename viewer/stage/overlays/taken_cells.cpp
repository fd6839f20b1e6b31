// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/taken_cells.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kBits = 64;

int roundedUp(int value, int unit) {
  return (value + unit - 1) / unit;
}

// Those of one word that lie in first..last, counted from the row's begin.
std::uint64_t maskOf(int word, int first, int last) {
  const int low = std::max(first - word * kBits, 0);
  const int high = std::min(last - word * kBits, kBits - 1);
  return (~std::uint64_t(0) << low) & (~std::uint64_t(0) >> (kBits - 1 - high));
}

double square(double value) {
  return value * value;
}

}  // namespace

TakenCells::TakenCells(const QRect& view)
    : fView(view),
      fColumns(roundedUp(std::max(view.width(), 0), kCell)),
      fRows(roundedUp(std::max(view.height(), 0), kCell)),
      fWordsInRow(roundedUp(fColumns, kBits)),
      fBits(static_cast<std::size_t>(fWordsInRow) * static_cast<std::size_t>(fRows)) {
}

// The cells between two pixels; empty where they are out of the view.
TakenCells::Span TakenCells::cells(double low, double high, int origin, int count) const {
  const auto cell = [&](double value) {
    return static_cast<int>(std::clamp((value - origin) / kCell, -1.0, static_cast<double>(count)));
  };
  if (high < origin || low >= origin + count * kCell) return {0, -1};
  return {
      std::max(cell(low), 0),
      std::min(static_cast<int>(std::ceil((std::min(high, 1e6) - origin) / kCell)) - 1, count - 1)};
}

std::size_t TakenCells::indexOf(int row, int word) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(fWordsInRow) +
         static_cast<std::size_t>(word);
}

void TakenCells::takeRow(int row, const Span& columns) {
  for (int word = columns.first / kBits; word * kBits <= columns.last; ++word)
    fBits[indexOf(row, word)] |= maskOf(word, columns.first, columns.last);
}

void TakenCells::take(const QRectF& rect) {
  const Span columns = cells(rect.left(), rect.right(), fView.left(), fColumns);
  const Span rows = cells(rect.top(), rect.bottom(), fView.top(), fRows);
  for (int row = rows.first; row <= rows.last; ++row) takeRow(row, columns);
}

void TakenCells::takeRing(const QPointF& centre, double inner, double outer) {
  const Span rows = cells(centre.y() - outer, centre.y() + outer, fView.top(), fRows);
  for (int row = rows.first; row <= rows.last; ++row) {
    const double top = fView.top() + row * kCell - centre.y(), bottom = top + kCell;
    const double nearest = std::max({0.0, top, -bottom});
    const double farthest = std::max(std::abs(top), std::abs(bottom));
    const double out = std::sqrt(std::max(0.0, square(outer) - square(nearest)));
    const double in = farthest < inner ? std::sqrt(square(inner) - square(farthest)) : 0;
    takeRow(row, cells(centre.x() - out, centre.x() - in, fView.left(), fColumns));
    takeRow(row, cells(centre.x() + in, centre.x() + out, fView.left(), fColumns));
  }
}

bool TakenCells::isFree(const QRect& rect) const {
  if (!fView.contains(rect)) return false;
  const Span columns = cells(rect.x(), rect.x() + rect.width(), fView.left(), fColumns);
  const Span rows = cells(rect.y(), rect.y() + rect.height(), fView.top(), fRows);
  for (int row = rows.first; row <= rows.last; ++row)
    for (int word = columns.first / kBits; word * kBits <= columns.last; ++word)
      if ((fBits[indexOf(row, word)] & maskOf(word, columns.first, columns.last)) != 0)
        return false;
  return true;
}

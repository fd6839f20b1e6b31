// SPDX-License-Identifier: Apache-2.0
// Which parts of the view are taken, for labels that look for a free place.
#pragma once

#include <QPointF>
#include <QRect>
#include <cstddef>
#include <cstdint>
#include <vector>

// The view in cells of a few pixels, a bit each. A cell that is touched is taken. Thread-bound.
class TakenCells {
 public:
  static constexpr int kCell = 4;  // pixels

  explicit TakenCells(const QRect& view);

  const QRect& view() const { return fView; }

  // What lies out of the view is left out.
  void take(const QRectF& rect);
  // All points that are from `inner` to `outer` away.
  void takeRing(const QPointF& centre, double inner, double outer);

  // False, too, for what isn't wholly in the view.
  bool isFree(const QRect& rect) const;

 private:
  using Word = std::uint64_t;
  struct Span {
    int first;
    int last;
  };

  Span cells(double low, double high, int origin, int count) const;
  std::size_t indexOf(int row, int word) const;
  void takeRow(int row, const Span& columns);

  QRect fView;
  int fColumns;
  int fRows;
  int fWordsInRow;
  std::vector<Word> fBits;
};

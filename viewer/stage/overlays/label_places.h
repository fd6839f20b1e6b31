// SPDX-License-Identifier: Apache-2.0
// Where labels stand: beside their marks, over no mark and no other label, and where they stood
// before as long as that goes.
#pragma once

#include <QRect>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "viewer/stage/overlays/taken_cells.h"

struct LabelWish {
  std::size_t name = 0;  // the same for the same label in the next picture
  QRectF mark;           // what it belongs to; a point for a text without a figure
  QSize size;
};

struct LabelPlace {
  QRect rect;          // null when there is no room
  bool isFar = false;  // a line must say what it belongs to
};

// Thread-bound.
class LabelPlaces {
 public:
  // `taken`: by the marks; the labels are added. `gap`: pixels between a mark and its label, at
  // least a cell. The answer is in the order of the wishes.
  std::vector<LabelPlace> place(const std::vector<LabelWish>& wishes, TakenCells& taken, int gap);

 private:
  std::unordered_map<std::size_t, int> fLast;  // by the labels' names
};

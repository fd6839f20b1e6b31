// SPDX-License-Identifier: Apache-2.0
// Recognised pictures: [[label, ..], _, _, [[alpha, beta], ..], ..]
#include <algorithm>

#include "viewer/detection/decoder.h"

namespace {

constexpr double kLineHeight = 0.05;  // between two labels, fraction of the picture's height
constexpr double kBeyondAnyPoint = 999999.0;

struct Range {
  double low = kBeyondAnyPoint;
  double high = -kBeyondAnyPoint;

  void include(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  double centre() const { return (low + high) * 0.5; }
};

// In the middle of the points' bounding box.
displayObject itemInMiddleOf(const Ky::KyValue& boundary, const FieldOfView& field) {
  Range x;
  Range y;
  for (const Ky::KyValue& point : boundary.asArray()) {
    x.include(field.x(point[0].asFloat()));
    y.include(field.y(point[1].asFloat()));
  }
  displayObject item;
  item.x = x.centre();
  item.y = y.centre();
  item.colour = kExtractorBlue;
  return item;
}

// A small circle marks the middle, beside the first label; the others are text only, below it.
displayObject labelled(const displayObject& middle, std::size_t line, const std::string& text) {
  displayObject item = middle;
  item.y += static_cast<double>(line) * kLineHeight;
  item.diameter = line == 0 ? 2 : 0;
  item.thickness = line == 0 ? 2 : 0;
  item.description = text;
  return item;
}

}  // namespace

void decodePictures(const Ky::KyValue& value, const FieldOfView& field, Items& items) {
  const auto& entries = entriesOf(value);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const displayObject middle = itemInMiddleOf(entries[i][3], field);
    const auto& labels = entries[i][0].asArray();
    for (std::size_t line = 0; line < labels.size(); ++line)
      append(items, itemName(itemName("picture", i) + " label", line),
             labelled(middle, line, labels[line].asString()));
  }
}

// SPDX-License-Identifier: Apache-2.0
// Landmarks: [[_, alpha, beta, width, ..], [mark id, ..], ..]
#include "viewer/detection/decoder.h"
#include "viewer/detection/saturate.h"

namespace {

// The extractor's angles are scaled as for a picture this wide, whatever its real width.
constexpr double kScaleWidth = 320.0;

displayObject landmark(const Ky::KyValue& entry, const FieldOfView& field) {
  const Ky::KyValue& shape = entry[0];
  displayObject item = itemAt(shape, field);
  item.diameter = truncateToInt(shape[3].asFloat() / (field.right - field.left) * kScaleWidth);
  item.description = "mark " + entry[1][0].toString();
  return item;
}

}  // namespace

void decodeLandmarks(const Ky::KyValue& value, const FieldOfView& field, Items& items) {
  const auto& entries = entriesOf(value);
  for (std::size_t i = 0; i < entries.size(); ++i)
    append(items, itemName("mark", i), landmark(entries[i], field));
}

// SPDX-License-Identifier: Apache-2.0
// Faces: [[_, alpha, beta, ..], ..]
#include "viewer/detection/decoder.h"

namespace {

displayObject face(const Ky::KyValue& entry, const FieldOfView& field, std::size_t index) {
  displayObject item = itemAt(entry[0], field);
  item.diameter = 25;
  item.shape = 1;
  item.description = "face " + std::to_string(index);
  return item;
}

}  // namespace

void decodeFaces(const Ky::KyValue& value, const FieldOfView& field, Items& items) {
  const auto& entries = entriesOf(value);
  // The last entry is no face: it tells of all of them.
  for (std::size_t i = 0; i + 1 < entries.size(); ++i)
    append(items, itemName("face", i), face(entries[i], field, i));
}

// SPDX-License-Identifier: Apache-2.0
// Logos: [[_, alpha, beta, ..], ..]
#include "viewer/detection/decoder.h"

namespace {

displayObject logo(const Ky::KyValue& entry, const FieldOfView& field, std::size_t index) {
  displayObject item = itemAt(entry[0], field);
  item.shape = 1;
  item.description = "logo " + std::to_string(index);
  return item;
}

}  // namespace

void decodeLogos(const Ky::KyValue& value, const FieldOfView& field, Items& items) {
  const auto& entries = entriesOf(value);
  for (std::size_t i = 0; i < entries.size(); ++i)
    append(items, itemName("logo", i), logo(entries[i], field, i));
}

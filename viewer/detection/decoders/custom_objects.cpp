// SPDX-License-Identifier: Apache-2.0
// Custom objects: [x, y, diameter, thickness, shape, red, green, blue, description]
#include "viewer/detection/decoder.h"
#include "viewer/detection/saturate.h"

namespace {

// The low 8 bits of each part; opaque.
std::uint32_t colourOf(const Ky::KyValue& red, const Ky::KyValue& green, const Ky::KyValue& blue) {
  const auto low = [](const Ky::KyValue& part) {
    return static_cast<std::uint32_t>(part.asInt()) & 0xFFu;
  };
  return 0xFF000000u | low(red) << 16 | low(green) << 8 | low(blue);
}

displayObject customObject(const Ky::KyValue& record) {
  displayObject item;
  item.x = record[0].asFloat();
  item.y = record[1].asFloat();
  item.diameter = truncateToInt(record[2].asFloat());
  item.thickness = record[3].asInt();
  item.shape = record[4].asInt();
  item.colour = colourOf(record[5], record[6], record[7]);
  item.description = record[8].asString();
  return item;
}

}  // namespace

void decodeCustomObjects(const Ky::KyValue& value, const FieldOfView&, Items& items) {
  const auto& records = value.asArray();
  for (std::size_t i = 0; i < records.size(); ++i)
    append(items, itemName("object", i), customObject(records[i]));
}

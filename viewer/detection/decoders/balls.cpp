// SPDX-License-Identifier: Apache-2.0
// Balls: [_, _, alpha, beta, radius in pixels, ..]
#include "viewer/detection/decoder.h"
#include "viewer/detection/saturate.h"

namespace {

// Lighter than the other kinds', to tell a ball from a landmark.
constexpr std::uint32_t kBallBlue = 0x0003B6;

displayObject ball(const Ky::KyValue& entry, const FieldOfView& field, std::size_t index) {
  displayObject item;
  item.x = field.x(entry[2].asFloat());
  item.y = field.y(entry[3].asFloat());
  item.diameter = truncateToInt(2 * entry[4].asFloat());
  item.thickness = 1;
  item.colour = kBallBlue;
  item.description = "ball " + std::to_string(index + 1);
  return item;
}

}  // namespace

void decodeBalls(const Ky::KyValue& value, const FieldOfView& field, Items& items) {
  const auto& entries = entriesOf(value);
  for (std::size_t i = 0; i < entries.size(); ++i)
    append(items, itemName("ball", i), ball(entries[i], field, i));
}

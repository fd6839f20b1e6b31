// SPDX-License-Identifier: Apache-2.0
// Ducks: [head alpha, head beta, _, body alpha, body beta, body left, top, right, bottom]
#include <array>

#include "viewer/detection/decoder.h"

namespace {

struct Angle {
  std::size_t element;
  const char* complaint;
};

// Element 2 is free for the extractor's use.
constexpr std::array<Angle, 8> kAngles{{
    {0, "x angle for the center of the head should float"},
    {1, "y angle for the center of the head should float"},
    {3, "x angle for the center of the body should float"},
    {4, "y angle for the center of the body should float"},
    {5, "left angle for the body should float"},
    {6, "top angle for the body should float"},
    {7, "right angle for the body should float"},
    {8, "bottom angle for the body should float"},
}};

void requireAngles(const Ky::KyValue& entry) {
  for (const Angle& angle : kAngles)
    if (!entry[angle.element].isFloat()) throw ExtractorComplaint(angle.complaint);
}

// Only the head is drawn.
displayObject duck(const Ky::KyValue& entry, const FieldOfView& field, std::size_t index) {
  displayObject item;
  item.x = field.x(entry[0].asFloat());
  item.y = field.y(entry[1].asFloat());
  item.diameter = 5;
  item.shape = 1;
  item.colour = kExtractorBlue;
  item.description = "duck head  " + std::to_string(index + 1);
  return item;
}

}  // namespace

void decodeDucks(const Ky::KyValue& value, const FieldOfView& field, Items& items) {
  const auto& entries = entriesOf(value);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    requireAngles(entries[i]);
    append(items, itemName("duck", i), duck(entries[i], field, i));
  }
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/detection/decoder.h"

#include <array>
#include <utility>

namespace {

// Ducks are decoded under the key "duck", but watched under "DuckDetected", which is a custom key
// like any other: what stands there is read as records.
constexpr std::array<std::pair<const char*, Decoder>, 6> kExtractorKeys{{
    {"LandmarkDetected", decodeLandmarks},
    {"FaceDetected", decodeFaces},
    {"LogoDetected", decodeLogos},
    {"PictureDetected", decodePictures},
    {"BallDetected", decodeBalls},
    {"duck", decodeDucks},
}};

}  // namespace

Decoder decoderFor(const std::string& key) {
  for (const auto& [name, decoder] : kExtractorKeys)
    if (key == name) return decoder;
  return decodeCustomObjects;
}

std::string itemName(std::string_view kind, std::size_t index) {
  std::size_t digits = 6;
  for (std::size_t rest = index / 1000000; rest > 0; rest /= 10) ++digits;
  std::string name(kind.size() + 1 + digits, ' ');
  kind.copy(name.data(), kind.size());
  for (std::size_t at = name.size(); digits > 0; --digits, index /= 10)
    name[--at] = static_cast<char>('0' + index % 10);
  return name;
}

void append(Items& items, std::string name, displayObject item) {
  items.insert_or_assign(items.end(), std::move(name), std::move(item));
}

const Ky::KyValue::Array& entriesOf(const Ky::KyValue& value) {
  static const Ky::KyValue::Array none;
  return value.size() < 2 ? none : value[1].asArray();
}

displayObject itemAt(const Ky::KyValue& shapeInfo, const FieldOfView& field) {
  displayObject item;
  item.x = field.x(shapeInfo[1].asFloat());
  item.y = field.y(shapeInfo[2].asFloat());
  item.colour = kExtractorBlue;
  return item;
}

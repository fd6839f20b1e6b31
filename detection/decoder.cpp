#include "detection/decoder.h"

#include <array>
#include <cstdio>
#include <utility>

namespace {

// Ducks are decoded under the key "duck", but watched under "DuckDetected", which is a custom key:
// the toy extractor publishes them there as ready-made records.
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

std::string itemName(const std::string& kind, std::size_t index) {
  char number[24];
  std::snprintf(number, sizeof number, " %06zu", index);
  return kind + number;
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

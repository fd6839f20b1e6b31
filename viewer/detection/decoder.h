// SPDX-License-Identifier: Apache-2.0
// From what an extractor wrote into the robot's memory to figures over the picture.
#pragma once

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "ky/value.h"
#include "viewer/core/display_object.h"

// The camera's field of view in radians, and where an angle lies in the picture. Immutable.
struct FieldOfView {
  float left = 0;
  float top = 0;
  float right = 0;
  float bottom = 0;

  // Fractions of the picture's width and height. Not clamped: what lies outside the field lies
  // outside 0..1, and a field without extent gives infinities or NaN.
  double x(float alpha) const { return (alpha - left) / (right - left); }
  double y(float beta) const { return (beta - top) / (bottom - top); }
};

using Items = std::map<std::string, displayObject>;

// An extractor broke its promise in a way that the robot's own log should hear of.
class ExtractorComplaint : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Adds to `items` what `value` describes. Throws Ky::KyError when the value is of another shape,
// or ExtractorComplaint; the items of the entries before the wrong one stay. Thread-safe on
// different items.
using Decoder = void (*)(const Ky::KyValue& value, const FieldOfView& field, Items& items);

// The decoder of a key of the robot's memory. Every key that is no extractor's gets the decoder of
// custom objects.
Decoder decoderFor(const std::string& key);

// The result of an extractor: [_, [entry, entry, ..]]. Fewer than two elements mean that nothing
// was seen.
void decodeLandmarks(const Ky::KyValue& value, const FieldOfView& field, Items& items);
void decodeFaces(const Ky::KyValue& value, const FieldOfView& field, Items& items);
void decodeLogos(const Ky::KyValue& value, const FieldOfView& field, Items& items);
void decodePictures(const Ky::KyValue& value, const FieldOfView& field, Items& items);
void decodeBalls(const Ky::KyValue& value, const FieldOfView& field, Items& items);
void decodeDucks(const Ky::KyValue& value, const FieldOfView& field, Items& items);
// Any program's own figures: an array of records [x, y, diameter, thickness, shape, red, green,
// blue, description].
void decodeCustomObjects(const Ky::KyValue& value, const FieldOfView& field, Items& items);

// ---- for the decoders

constexpr std::uint32_t kExtractorBlue = 0x0000C8;

// "mark 000012": padded, so that the items' order, in which they are painted, is the entries'.
std::string itemName(std::string_view kind, std::size_t index);

// Adds an item; quick when its name comes after all others. One of the same name is replaced.
void append(Items& items, std::string name, displayObject item);

// The entries of an extractor's result; empty when nothing was seen.
const Ky::KyValue::Array& entriesOf(const Ky::KyValue& value);

// An item where the shape information [_, alpha, beta, ..] says, with the looks that most
// extractors share.
displayObject itemAt(const Ky::KyValue& shapeInfo, const FieldOfView& field);

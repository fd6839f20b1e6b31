// SPDX-License-Identifier: Apache-2.0
// Decodes values as the viewer does, without a robot.
#pragma once

#include <string>
#include <vector>

#include "viewer/detection/decoder.h"

// A field of view in which angles are easy to place: 0 to 1 across, 0 to 2 down.
inline constexpr FieldOfView kUnitField{0.0f, 0.0f, 1.0f, 2.0f};

inline Items decode(const std::string& key, const Ky::KyValue& value,
                    const FieldOfView& field = kUnitField) {
  Items items;
  decoderFor(key)(value, field, items);
  return items;
}

// The items in the order in which they are painted.
inline std::vector<displayObject> listed(const Items& items) {
  std::vector<displayObject> list;
  for (const auto& [name, item] : items) list.push_back(item);
  return list;
}

inline std::vector<std::string> descriptions(const Items& items) {
  std::vector<std::string> list;
  for (const auto& [name, item] : items) list.push_back(item.description);
  return list;
}

// What an extractor writes: a time and the entries.
inline Ky::KyValue result(Ky::KyValue::Array entries) {
  return Ky::KyValue::array({Ky::KyValue::array({12, 34}), std::move(entries)});
}

inline Ky::KyValue landmark(float alpha, float beta, float width, Ky::KyValue id) {
  return Ky::KyValue::array(
      {Ky::KyValue::array({0, alpha, beta, width}), Ky::KyValue::array({std::move(id)})});
}

inline Ky::KyValue shape(float alpha, float beta) {
  return Ky::KyValue::array({Ky::KyValue::array({0, alpha, beta})});
}

inline Ky::KyValue ball(float alpha, float beta, float radius) {
  return Ky::KyValue::array({"id", "pose", alpha, beta, radius});
}

inline Ky::KyValue duck(float alpha, float beta) {
  return Ky::KyValue::array({alpha, beta, "free", 0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f});
}

inline Ky::KyValue picture(Ky::KyValue::Array labels, Ky::KyValue::Array boundary) {
  return Ky::KyValue::array({std::move(labels), 0, 0, std::move(boundary)});
}

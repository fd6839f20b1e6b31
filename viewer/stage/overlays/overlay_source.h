// SPDX-License-Identifier: Apache-2.0
// What is drawn over the stage's picture, as it was at one look at the model.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "viewer/core/display_object.h"

class Model;

// Bytes of an item's text. What is beyond can't be read over a picture, and need not be copied
// while the model is locked.
constexpr std::size_t kLongestText = 1024;

// The items that one key of the robot's memory held. A plain value.
struct OverlaySource {
  std::string key;
  std::int64_t seen = 0;  // as in displayObjectManager
  std::vector<displayObject> items;
};

// Immutable, to be kept and handed around.
using OverlaySet = std::shared_ptr<const OverlaySource>;

// Copies the items of the model, in the order of their keys and names. Thread-safe.
std::vector<OverlaySource> overlaysOf(const Model& model);

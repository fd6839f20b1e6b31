// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/overlay_source.h"

#include "viewer/core/model.h"

namespace {

displayObject shortened(const displayObject& item) {
  return {item.x,
          item.y,
          item.diameter,
          item.thickness,
          item.shape,
          item.colour,
          item.description.substr(0, kLongestText)};
}

}  // namespace

std::vector<OverlaySource> overlaysOf(const Model& model) {
  std::vector<OverlaySource> sources;
  const Ky::KyCriticalSection lock(model.fObjectsMutex);
  sources.reserve(model.fObjects.size());
  for (const auto& [key, manager] : model.fObjects) {
    OverlaySource& source = sources.emplace_back(OverlaySource{key, manager.fSeen, {}});
    source.items.reserve(manager.fObjects.size());
    for (const auto& [name, item] : manager.fObjects) source.items.push_back(shortened(item));
  }
  return sources;
}

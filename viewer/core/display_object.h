// SPDX-License-Identifier: Apache-2.0
// What is drawn over the picture: one figure, and the figures of one source.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <string>

#include "ky/mutex.h"

// One overlay item. A plain value.
struct displayObject {
  double x = 0.0;     // centre, fraction 0..1 of the picture's width; outside is off the picture
  double y = 0.0;     // centre, fraction 0..1 of the picture's height
  int diameter = 50;  // pixels of the displayed picture
  int thickness = 2;  // rings drawn around the first one
  int shape = 0;      // 0 circle, 1 cross, 2 square; anything else draws the text only
  std::uint32_t colour = 0;  // QRgb; alpha is ignored
  std::string description;   // drawn beside the item; may be empty
};

// The overlay items of one source, by name. Guarded by Model::fObjectsMutex and, while one source
// is being refreshed, by its own mutex as well.
struct displayObjectManager {
  boost::shared_ptr<Ky::KyMutex> fMutex;  // made by Model::addObjectWatch
  std::map<std::string, displayObject> fObjects;
  // When the picture was captured in which they were seen, by the robot's clock, in microseconds
  // since the Unix epoch; 0: not known.
  std::int64_t fSeen = 0;

  void clear() { fObjects.clear(); }
};

// SPDX-License-Identifier: Apache-2.0
// What finds things of one kind in pictures.
#pragma once

#include <string>
#include <vector>

#include "ky/value.h"
#include "robot/camera/frame.h"

namespace robot {

// What is to stand under a key of the robot's memory.
struct Finding {
  std::string key;
  Ky::KyValue value;
};

// An extractor calls detect() on one thread of its own. Whatever else a detector offers, such as
// parameters, is called on other threads at the same time: it guards itself.
class Detector {
 public:
  virtual ~Detector() = default;

  // The keys that detect() may write. They never change.
  virtual std::vector<std::string> keys() const = 0;
  // The picture's things. A finding with nothing in it is an empty array; one with things is
  // [[seconds, microseconds of the picture], [entries]] unless the kind says otherwise. A key that
  // is missing in the answer keeps what it had.
  virtual std::vector<Finding> detect(const Frame& frame) = 0;
};

// [[seconds, microseconds], entries], or the empty array when there are none.
Ky::KyValue findings(const Frame& frame, Ky::KyValue::Array entries);

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// One picture after the other, as the robot has them to give.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "cli/pictures/camera.h"
#include "cli/pictures/picture.h"

namespace cli {

struct FedPicture {
  Picture picture;
  bool isEncoded = false;  // its bytes are H.264, to be put behind those before
  bool isKey = false;
};

// Thread-bound.
class PictureFeed {
 public:
  virtual ~PictureFeed() = default;
  // The next one; nothing when none comes in this time. What is encoded begins with a key frame
  // and has no gaps. Throws KyError when the robot is lost or sends what is no picture.
  virtual std::optional<FedPicture> next(std::chrono::milliseconds patience) = 0;
  // Why none comes, in the robot's words; empty after one that came.
  const std::string& problem() const { return fProblem; }

 protected:
  std::string fProblem;
};

// A stream where the robot offers it; otherwise each picture is asked for. `camera` outlives it.
std::unique_ptr<PictureFeed> openFeed(const RobotConnection& robot, CameraSubscription& camera,
                                      const CameraOptions& options);

}  // namespace cli

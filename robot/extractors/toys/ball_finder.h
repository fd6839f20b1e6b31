// SPDX-License-Identifier: Apache-2.0
// Finds balls by their colour and shape.
#pragma once

#include <cstdint>
#include <opencv2/core.hpp>
#include <optional>
#include <vector>

#include "robot/extractors/toys/ball_tuning.h"

namespace robot {

// In pixels of a picture of 320 x 240.
struct Ball {
  cv::Point2d centre;
  double radius = 0;
};

// Thread-bound: it remembers where a ball was.
class BallFinder {
 public:
  // `yuv`: 8-bit Y, U, V, 4:3. `time`: of the picture, microseconds. The best ball first, which is
  // the one that fills its circle best for its size.
  std::vector<Ball> find(const cv::Mat& yuv, std::int64_t time, const BallTuning& tuning);

 private:
  struct Seen {
    cv::Point2d centre;
    std::int64_t time = 0;
  };

  void keepReachable(std::vector<Ball>& balls, std::int64_t time, int maxShift) const;

  std::optional<Seen> fLast;
};

}  // namespace robot

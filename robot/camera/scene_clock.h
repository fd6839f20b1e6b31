// SPDX-License-Identifier: Apache-2.0
// The clock in the generated scene's upper left corner, with the name of the camera.
#pragma once

#include "robot/camera/scene_item.h"

namespace robot {

// Shows local time with milliseconds.
class SceneClock : public SceneItem {
 public:
  static constexpr int kX = 28, kY = 28, kWidth = 372, kHeight = 118;

  explicit SceneClock(std::string label);

  void draw(cv::Mat& picture, std::int64_t time) const override;
  // "14:03:27.512"
  static std::string textAt(std::int64_t time);

 private:
  std::string fLabel;
};

}  // namespace robot

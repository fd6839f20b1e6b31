// SPDX-License-Identifier: Apache-2.0
// One thing in the generated scene.
#pragma once

#include <cstdint>
#include <opencv2/core.hpp>
#include <optional>
#include <string>

namespace robot {

// Pixels of the scene's picture.
inline constexpr int kSceneWidth = 1280;
inline constexpr int kSceneHeight = 960;

// Where a thing is: its centre and size as fractions of the picture. The centre of a thing that
// has left the picture lies outside 0..1.
struct SceneTruth {
  std::string name;
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

// Immutable: what it draws depends on the time alone. Times are microseconds since the Unix epoch.
class SceneItem {
 public:
  virtual ~SceneItem() = default;

  virtual void draw(cv::Mat& picture, std::int64_t time) const = 0;
  // Nothing for what is no thing in the scene, such as the clock.
  virtual std::optional<SceneTruth> truthAt(std::int64_t) const { return std::nullopt; }
};

}  // namespace robot

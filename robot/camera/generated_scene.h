// SPDX-License-Identifier: Apache-2.0
// The scene that a camera shows without a film or device: things that move on a known course in
// front of a still background, and a running clock.
#pragma once

#include <memory>
#include <vector>

#include "robot/camera/scene_item.h"

namespace robot {

// Immutable once filled: any thread may render.
class GeneratedScene {
 public:
  static constexpr int kWidth = kSceneWidth;
  static constexpr int kHeight = kSceneHeight;

  // Camera 0 looks at the country by day, camera 1 at a town by night.
  explicit GeneratedScene(int camera);

  // Drawn after, so in front of, what is there already.
  void add(std::unique_ptr<SceneItem> item);

  // `time`: microseconds since the Unix epoch. The same time gives the same picture.
  cv::Mat render(std::int64_t time) const;
  // Where every moving thing is in the picture of that time.
  std::vector<SceneTruth> truthAt(std::int64_t time) const;

 private:
  cv::Mat fBackground;
  std::vector<std::unique_ptr<SceneItem>> fItems;
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/generated_scene.h"

#include "robot/camera/scene_backgrounds.h"
#include "robot/camera/scene_clock.h"
#include "robot/camera/scene_person.h"
#include "robot/camera/scene_signs.h"
#include "robot/camera/scene_targets.h"
#include "robot/camera/scene_things.h"

namespace robot {

GeneratedScene::GeneratedScene(int camera) {
  const cv::Size size(kWidth, kHeight);
  fBackground = camera == 0 ? paintCountry(size) : paintTown(size);
  if (camera == 0) {
    add(makeBalloon());
    add(makeCar());
    add(makeHarbourSign());
    add(makeEmblemSign());
    add(makePerson());
    add(makeSignboard());
    add(makeBall());
    add(makeDuck());
  } else {
    add(makeAirship());
    add(makeTram());
  }
  add(std::make_unique<SceneClock>("camera " + std::to_string(camera)));
}

void GeneratedScene::add(std::unique_ptr<SceneItem> item) {
  fItems.push_back(std::move(item));
}

cv::Mat GeneratedScene::render(std::int64_t time) const {
  cv::Mat picture = fBackground.clone();
  for (const auto& item : fItems) item->draw(picture, time);
  return picture;
}

std::vector<SceneTruth> GeneratedScene::truthAt(std::int64_t time) const {
  std::vector<SceneTruth> truth;
  for (const auto& item : fItems)
    if (auto one = item->truthAt(time)) truth.push_back(*std::move(one));
  return truth;
}

}  // namespace robot

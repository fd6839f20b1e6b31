// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_detection.h"

#include "robot/extractors/toys/ball_detector.h"

namespace robot {

BallDetection::BallDetection(boost::shared_ptr<Ky::KyBroker> broker,
                             std::shared_ptr<Cameras> cameras,
                             std::shared_ptr<SharedBallTuning> tuning)
    : Extractor(std::move(broker), std::move(cameras), "KyBallDetection", "balls",
                std::make_unique<BallDetector>(tuning)),
      fTuning(std::move(tuning)) {
  std::string names;
  for (const std::string& name : SharedBallTuning::names()) names += " " + name;
  setModuleDescription(getModuleDescription() +
                       " Its parameters count for KyColoredToysDetection too:" + names + ".");

  functionName("getParam", getName(), "A parameter.");
  addParam("name", "of the parameter");
  setReturn("value", "[value], or [smallest, largest] for radiusRange");
  bindMethod(&BallDetection::getParam);

  functionName("setParam", getName(), "Changes a parameter.");
  addParam("name", "of the parameter");
  addParam("value", "[value], or [smallest, largest] for radiusRange");
  bindMethod(&BallDetection::setParam);
}

Ky::KyValue BallDetection::getParam(const std::string& name) const {
  return fTuning->get(name);
}

void BallDetection::setParam(const std::string& name, const Ky::KyValue& value) {
  fTuning->set(name, value);
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// The module "KyBallDetection": balls alone, and the tuning of whoever looks for balls.
#pragma once

#include <memory>
#include <string>

#include "robot/extractors/extractor.h"
#include "robot/extractors/toys/ball_tuning.h"

namespace robot {

// It writes the same key as "KyColoredToysDetection", and the same under it: whoever subscribes to
// one of them need not subscribe to the other.
class BallDetection : public Extractor {
 public:
  BallDetection(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                std::shared_ptr<SharedBallTuning> tuning);

  // See SharedBallTuning for the names, values and errors.
  Ky::KyValue getParam(const std::string& name) const;
  void setParam(const std::string& name, const Ky::KyValue& value);

 private:
  const std::shared_ptr<SharedBallTuning> fTuning;
};

}  // namespace robot

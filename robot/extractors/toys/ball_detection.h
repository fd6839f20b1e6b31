// The module "KyBallDetection": tunes the ball finder of "KyColoredToysDetection".
#pragma once

#include <memory>
#include <string>

#include "ky/module.h"
#include "robot/extractors/toys/ball_tuning.h"

namespace robot {

// Nobody subscribes here: balls are coloured toys, and "KyColoredToysDetection" finds them.
class BallDetection : public Ky::KyModule {
 public:
  BallDetection(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<SharedBallTuning> tuning);

  // See SharedBallTuning for the names, values and errors.
  Ky::KyValue getParam(const std::string& name) const;
  void setParam(const std::string& name, const Ky::KyValue& value);

 private:
  const std::shared_ptr<SharedBallTuning> fTuning;
};

}  // namespace robot

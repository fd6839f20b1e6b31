// SPDX-License-Identifier: Apache-2.0
// The module "KyColoredToysDetection": balls and ducks.
#pragma once

#include <array>
#include <map>

#include "robot/extractors/extractor.h"
#include "robot/extractors/toys/toy_detector.h"

namespace robot {

// Looks for the toys that somebody who is subscribed has switched on; which those are is kept for
// each program, so that two desktops don't switch each other's toys off. What a program switched on
// ends with its last subscription.
class ColoredToys : public Extractor {
 public:
  ColoredToys(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
              std::shared_ptr<const SharedBallTuning> tuning);

  // "mode": [toy, on], a toy of 1 (ball) or 2 (duck), on 1 or 0. "resolution": [0..3], in which is
  // searched, for everybody. Throws KyError for every other name or value, and when a toy is to be
  // switched on by a program that is not subscribed.
  void setParam(const Ky::KyPeer& caller, const std::string& name, const Ky::KyValue& value);

 protected:
  void subscriberGone(const Ky::KyPeer& peer) override;

 private:
  using Choice = std::array<bool, kToys>;

  ColoredToys(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
              std::shared_ptr<const SharedBallTuning> tuning,
              std::shared_ptr<ToySettings> settings);

  void setMode(const Ky::KyPeer& caller, const Ky::KyValue& value);
  void tellDetector();

  const std::shared_ptr<ToySettings> fSettings;
  std::map<std::string, Choice> fChoices;  // of each peer; the call thread's own
};

}  // namespace robot

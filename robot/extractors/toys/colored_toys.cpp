// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/colored_toys.h"

#include <algorithm>

namespace robot {
namespace {

using Ky::KyError;
using Ky::KyValue;

bool areIntsWithin(const KyValue& value, std::initializer_list<std::pair<int, int>> ranges) {
  if (!value.isArray() || value.size() != ranges.size()) return false;
  return std::equal(ranges.begin(), ranges.end(), value.asArray().begin(),
                    [](const auto& range, const KyValue& element) {
                      return element.isInt() && element.asInt64() >= range.first &&
                             element.asInt64() <= range.second;
                    });
}

}  // namespace

ColoredToys::ColoredToys(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                         std::shared_ptr<const SharedBallTuning> tuning)
    : ColoredToys(std::move(broker), std::move(cameras), std::move(tuning),
                  std::make_shared<ToySettings>()) {
}

ColoredToys::ColoredToys(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                         std::shared_ptr<const SharedBallTuning> tuning,
                         std::shared_ptr<ToySettings> settings)
    : Extractor(std::move(broker), std::move(cameras), "KyColoredToysDetection", "balls and ducks",
                std::make_unique<ToyDetector>(settings, std::move(tuning))),
      fSettings(std::move(settings)) {
  functionName("setParam", getName(),
               "\"mode\" switches a toy on or off for the calling program, which is subscribed; "
               "\"resolution\" chooses the pictures in which everybody's toys are searched.");
  addParam("name", "mode or resolution");
  addParam("value",
           "mode: [toy, on], 1 ball or 2 duck, 1 on or 0 off; resolution: [0 160x120, 1 320x240, "
           "2 640x480 or 3 1280x960]");
  bindMethod(&ColoredToys::setParam);
}

void ColoredToys::setParam(const Ky::KyPeer& caller, const std::string& name,
                           const KyValue& value) {
  if (name == "mode") return setMode(caller, value);
  if (name != "resolution")
    throw KyError("there is no parameter \"" + name + "\"; there are mode and resolution");
  if (!areIntsWithin(value, {{0, kLargestResolution}}))
    throw KyError("\"resolution\" takes [0], [1], [2] or [3], not " + value.toString());
  fSettings->resolution = value[0].asInt();
}

void ColoredToys::setMode(const Ky::KyPeer& caller, const KyValue& value) {
  if (!areIntsWithin(value, {{1, kToys}, {0, 1}}))
    throw KyError("\"mode\" takes [1 ball or 2 duck, 1 on or 0 off], not " + value.toString());
  const bool on = value[1].asInt() != 0;
  if (on && !isSubscribed(caller))
    throw KyError("only a subscriber can switch a toy on; subscribe first");
  fChoices[caller.id][static_cast<std::size_t>(value[0].asInt() - 1)] = on;
  tellDetector();
}

void ColoredToys::subscriberGone(const Ky::KyPeer& peer) {
  fChoices.erase(peer.id);
  tellDetector();
}

void ColoredToys::tellDetector() {
  for (std::size_t toy = 0; toy < kToys; ++toy)
    fSettings->wanted[toy] = std::any_of(fChoices.begin(), fChoices.end(),
                                         [toy](const auto& entry) { return entry.second[toy]; });
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// Switching the robot's vision extractors on and off.
#include <array>

#include "ky/proxy.h"
#include "viewer/core/module.h"
#include "zu/log.h"

namespace {

constexpr const char* kLauncher = "KyLauncher";

struct Kind {
  const char* word;
  const char* module;   // what is subscribed
  const char* kept;     // what the list of active extractors says; differs for the coloured toys
  const char* watched;  // where the robot's memory has the results
  int period;           // milliseconds
  float precision;
  int toy;          // the coloured toy that the extractor is told to look for; 0 is none
  bool watchFirst;  // the watch begins before the extractor is listed as active
  bool loads;       // the extractor loads its database on activation
};

constexpr std::array<Kind, 6> kKinds{{
    {"mark", "KyLandMarkDetection", "KyLandMarkDetection", "LandmarkDetected", 1000, 1.0f, 0, false,
     false},
    {"ball", "KyColoredToysDetection", "KyBallDetection", "BallDetected", 100, 1.0f, 1, false,
     false},
    {"duck", "KyColoredToysDetection", "KyDuckDetection", "DuckDetected", 1000, 1.0f, 2, false,
     false},
    {"face", "KyFaceDetection", "KyFaceDetection", "FaceDetected", 500, 0.0f, 0, false, false},
    {"logo", "KyLogoDetection", "KyLogoDetection", "LogoDetected", 500, 0.5f, 0, true, false},
    {"picture", "KyVisionRecognition", "KyVisionRecognition", "PictureDetected", 500, 0.5f, 0, true,
     true},
}};

const Kind* findKind(const std::string& word) {
  for (const Kind& kind : kKinds)
    if (word == kind.word) return &kind;
  return nullptr;
}

using Proxy = boost::shared_ptr<Ky::KyProxy>;
using Extractors = std::list<std::string>;

// The toy extractor takes its parameters as arrays, also single numbers.
void switchToy(const Proxy& extractor, const Kind& kind, bool on) {
  extractor->callVoid("setParam", "mode", Ky::KyValue::array({kind.toy, on ? 1 : 0}));
}

void activate(const Proxy& extractor, const Kind& kind, const std::string& subscriber,
              Extractors& active, Model& model) {
  extractor->callVoid("subscribe", subscriber, kind.period, kind.precision);
  if (kind.watchFirst) model.addObjectWatch(kind.watched);
  active.emplace_back(kind.kept);
  if (kind.toy != 0) {
    extractor->callVoid("setParam", "resolution", Ky::KyValue::array({1}));
    switchToy(extractor, kind, true);
  }
  if (!kind.watchFirst) model.addObjectWatch(kind.watched);
  if (kind.loads) extractor->callVoid("load");
}

// Ends all watches, not only the kind's own: the overlay starts afresh.
void deactivate(const Proxy& extractor, const Kind& kind, const std::string& subscriber,
                Extractors& active, Model& model) {
  if (kind.toy != 0) switchToy(extractor, kind, false);
  extractor->callVoid("unsubscribe", subscriber);
  active.remove(kind.kept);
  model.removeObjectWatch(kind.watched);
  const Ky::KyCriticalSection objects(model.fObjectsMutex);
  model.fObjects.clear();
}

}  // namespace

Ky::KyReads Module::presenceReads() {
  Ky::KyReads reads = {Ky::KyRead::presenceOf(kLauncher)};
  for (const Kind& kind : kKinds) reads.push_back({kLauncher, "isModulePresent", {kind.module}});
  return reads;
}

bool Module::activateDetection(const std::string& word, int action) {
  const Kind* kind = findKind(word);
  if (kind == nullptr) return true;
  const zu::log::Subject robot(fRobot);
  try {
    const auto& broker = getParentBroker();
    switch (action) {
      case 1:
        activate(broker->getProxy(kind->module), *kind, getName(), fActiveExtractors, *fModel);
        return true;
      case 0:
        deactivate(broker->getProxy(kind->module), *kind, getName(), fActiveExtractors, *fModel);
        return true;
      case -1:
        return broker->getProxy(kLauncher)->call<bool>("isModulePresent", kind->module);
      default:
        throw Ky::KyError("");
    }
  } catch (const Ky::KyError& error) {
    zu::log::error("periscope", "activateDetection")
        << "Error in Module::activateDetection. " << error.what();
    return false;
  }
}

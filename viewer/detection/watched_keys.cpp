// SPDX-License-Identifier: Apache-2.0
#include "ky/memory_proxy.h"
#include "viewer/core/module.h"
#include "zu/log.h"

namespace {

// Each tick asks for all of them. Detections' keys are never refused: there are six.
constexpr std::size_t kMostKeys = 256;
constexpr std::size_t kLongestKey = 1024;  // bytes; as in the robot's memory
constexpr std::size_t kShownBytes = 64;    // of a key, in the log

bool isWatched(Model& model, const std::string& key) {
  const Ky::KyCriticalSection objects(model.fObjectsMutex);
  return model.fObjects.count(key) > 0;
}

std::size_t watchedCount(Model& model) {
  const Ky::KyCriticalSection objects(model.fObjectsMutex);
  return model.fObjects.size();
}

// Why a key can't be watched besides so many; nothing when it can.
std::string refusalOf(const std::string& key, std::size_t watched) {
  if (key.size() > kLongestKey)
    return "a key has at most " + std::to_string(kLongestKey) + " bytes; choose a shorter one";
  if (watched >= kMostKeys)
    return "there are " + std::to_string(kMostKeys) +
           " keys already; switch a detection off, which ends all watches, and ask again";
  return {};
}

Ky::KyValue::Array watchedKeys(Model& model) {
  const Ky::KyCriticalSection objects(model.fObjectsMutex);
  Ky::KyValue::Array keys;
  for (const auto& [key, manager] : model.fObjects) keys.emplace_back(key);
  return keys;
}

}  // namespace

void Module::subscribeLog(const std::string& strLogName) {
  if (isWatched(*fModel, strLogName)) return;
  const std::string refusal = refusalOf(strLogName, watchedCount(*fModel));
  if (refusal.empty())
    fModel->addObjectWatch(strLogName);
  else if (refusal != fRefusal)  // programs ask again and again
    zu::log::warning("periscope", "subscribeLog")
        << "The key " << Ky::KyValue(strLogName.substr(0, kShownBytes)).toString()
        << " is not watched: " << refusal;
  fRefusal = refusal;
}

void Module::updateObjectsValue() {
  const Ky::KyValue::Array keys = watchedKeys(*fModel);
  if (keys.empty()) return;
  const zu::log::Subject robot(fRobot);
  try {
    const Ky::KyValue answer = Ky::KyMemoryProxy(getParentBroker(), 0).getListData(keys);
    const auto& values = answer.asArray();
    if (values.size() > keys.size())
      throw Ky::KyError("KyMemory", "getListData",
                        "the answer holds " + std::to_string(values.size()) + " values for " +
                            std::to_string(keys.size()) + " keys");
    for (std::size_t i = 0; i < values.size(); ++i) updateFromValue(keys[i].asString(), values[i]);
  } catch (const std::exception& error) {
    zu::log::error("periscope", "updateObjectsValue")
        << "Exception while updating object values:" << error.what();
  }
}

// SPDX-License-Identifier: Apache-2.0
#include "ky/logger_proxy.h"
#include "viewer/core/module.h"
#include "viewer/detection/decoder.h"
#include "zu/log.h"

namespace {

FieldOfView fieldOfView(const Model& model) {
  return {model.fAngles[0], model.fAngles[1], model.fAngles[2], model.fAngles[3]};
}

// The first element of what extractors write, [seconds, microseconds].
std::int64_t timeOf(const std::string& key, const Ky::KyValue& value) {
  if (decoderFor(key) == decodeCustomObjects) return 0;
  if (value.size() < 1 || !value[0].isArray() || value[0].size() < 2) return 0;
  if (!value[0][0].isInt() || !value[0][1].isInt()) return 0;
  return microsecondsOf(value[0][0].asInt64(), value[0][1].asInt64());
}

// Returns what the robot's log should hear, mostly nothing. It is told by the caller, for no call
// may be made while a lock is held that the painting waits for.
std::string replaceItems(Model& model, const std::string& key, const Ky::KyValue& value) {
  const Ky::KyCriticalSection objects(model.fObjectsMutex);
  const auto found = model.fObjects.find(key);
  // The watch may have ended between the poll and now.
  if (found == model.fObjects.end()) return {};
  displayObjectManager& manager = found->second;
  const Ky::KyCriticalSection items(manager.fMutex);
  manager.clear();
  manager.fSeen = 0;
  try {
    manager.fSeen = timeOf(key, value);
    decoderFor(key)(value, fieldOfView(model), manager.fObjects);
  } catch (const ExtractorComplaint& complaint) {
    return complaint.what();
  }
  return {};
}

}  // namespace

void Module::updateFromValue(const std::string& key, const Ky::KyValue& value) {
  const zu::log::Subject robot(fRobot);
  try {
    const std::string complaint = replaceItems(*fModel, key, value);
    if (!complaint.empty()) Ky::KyLoggerProxy(getParentBroker()).info(getName(), complaint);
  } catch (const std::exception& error) {
    zu::log::error("periscope", "updateFromValue")
        << "Error handling Extractor result :" << error.what();
  }
}

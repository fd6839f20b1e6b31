// SPDX-License-Identifier: Apache-2.0
#include "ky/memory_proxy.h"
#include "viewer/core/module.h"
#include "zu/log.h"

namespace {

Ky::KyValue::Array watchedKeys(Model& model) {
  const Ky::KyCriticalSection objects(model.fObjectsMutex);
  Ky::KyValue::Array keys;
  for (const auto& [key, manager] : model.fObjects) keys.emplace_back(key);
  return keys;
}

}  // namespace

void Module::subscribeLog(const std::string& strLogName) {
  fModel->addObjectWatch(strLogName);
}

void Module::updateObjectsValue() {
  const Ky::KyValue::Array keys = watchedKeys(*fModel);
  if (keys.empty()) return;
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

// SPDX-License-Identifier: Apache-2.0
#include "ky/memory_proxy.h"

#include <utility>

namespace Ky {

KyMemoryProxy::KyMemoryProxy(boost::shared_ptr<KyBroker> broker, int check)
    : fBroker(std::move(broker)), fProxy(fBroker->getProxy("KyMemory", check)) {
}

void KyMemoryProxy::insertData(const std::string& key, const KyValue& value) {
  fProxy->callVoid("insertData", key, value);
}

KyValue KyMemoryProxy::getData(const std::string& key) {
  return fProxy->call<KyValue>("getData", key);
}

KyValue KyMemoryProxy::getListData(const KyValue& keys) {
  return fProxy->call<KyValue>("getListData", keys);
}

void KyMemoryProxy::removeData(const std::string& key) {
  fProxy->callVoid("removeData", key);
}

std::vector<std::string> KyMemoryProxy::getDataList(const std::string& prefix) {
  return fProxy->call<std::vector<std::string>>("getDataList", prefix);
}

std::unique_ptr<KyChanges> KyMemoryProxy::changes(const std::vector<std::string>& keys) {
  return std::make_unique<KyChanges>(fBroker, keys);
}

bool KyMemoryProxy::offersChanges() const {
  return KyChanges::areOffered(*fBroker);
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// The robot's shared memory: values under names, for everybody to read and write.
#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "ky/broker.h"
#include "ky/changes.h"
#include "ky/proxy.h"
#include "ky/value.h"

namespace Ky {

// Proxy to the module "KyMemory". Thread-safe; every call may throw KyError.
class KyMemoryProxy {
 public:
  // Asks the robot whether there is such a module and throws KyError when there is none. With
  // `check` 0 it asks nothing: the first call says the same.
  explicit KyMemoryProxy(boost::shared_ptr<KyBroker> broker, int check = 1);

  void insertData(const std::string& key, const KyValue& value);
  // Throws KyError for an unknown key.
  KyValue getData(const std::string& key);
  // `keys` is an array of strings. One value for each, in the same order. For an unknown key the
  // robot answers the empty array, as kyrobot does, or throws KyError.
  KyValue getListData(const KyValue& keys);
  // Throws KyError for an unknown key.
  void removeData(const std::string& key);
  // The keys that begin with `prefix`, sorted.
  std::vector<std::string> getDataList(const std::string& prefix);
  // Has the robot tell what changes under these keys, instead of asking again and again. At most
  // 64. Throws KyError where the robot does not offer that: offersChanges() says whether it does,
  // and asks nobody.
  std::unique_ptr<KyChanges> changes(const std::vector<std::string>& keys);
  bool offersChanges() const;

 private:
  boost::shared_ptr<KyBroker> fBroker;
  boost::shared_ptr<KyProxy> fProxy;
};

}  // namespace Ky

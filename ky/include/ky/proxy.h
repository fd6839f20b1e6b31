// SPDX-License-Identifier: Apache-2.0
// Calls the methods of one module, wherever it lives.
#pragma once

#include <boost/shared_ptr.hpp>
#include <chrono>
#include <string>
#include <utility>

#include "ky/broker.h"
#include "ky/convert.h"
#include "ky/value.h"

namespace Ky {

// Made by KyBroker::getProxy(). Cheap; keeps its broker alive. Thread-safe. Calls block until the
// answer, an error or the deadline: see KyBroker::call().
class KyProxy {
 public:
  KyProxy(boost::shared_ptr<KyBroker> broker, std::string module);

  const std::string& module() const { return fModule; }

  // proxy->call<int>("getParam", 0, 1)
  template <class Result, class... Arguments>
  Result call(const std::string& method, Arguments&&... arguments) const {
    return KyConvert<Result>::from(
        fBroker->call(fModule, method, {KyValue(std::forward<Arguments>(arguments))...}));
  }

  // proxy->callVoid("setParam", "mode", value)
  template <class... Arguments>
  void callVoid(const std::string& method, Arguments&&... arguments) const {
    fBroker->call(fModule, method, {KyValue(std::forward<Arguments>(arguments))...});
  }

 private:
  boost::shared_ptr<KyBroker> fBroker;
  std::string fModule;
};

}  // namespace Ky

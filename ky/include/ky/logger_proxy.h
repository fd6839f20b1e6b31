// SPDX-License-Identifier: Apache-2.0
// The robot's log.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "ky/broker.h"
#include "ky/proxy.h"

namespace Ky {

// Proxy to the module "KyLogger": writes lines into the robot's own log, under the name of the
// module that has something to say. Thread-safe; every call may throw KyError.
class KyLoggerProxy {
 public:
  // Throws KyError when there is no such module.
  explicit KyLoggerProxy(boost::shared_ptr<KyBroker> broker);

  void error(const std::string& module, const std::string& text);
  void warn(const std::string& module, const std::string& text);
  void info(const std::string& module, const std::string& text);
  void debug(const std::string& module, const std::string& text);

 private:
  boost::shared_ptr<KyProxy> fProxy;
};

}  // namespace Ky

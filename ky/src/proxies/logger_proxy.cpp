// SPDX-License-Identifier: Apache-2.0
#include "ky/logger_proxy.h"

namespace Ky {

KyLoggerProxy::KyLoggerProxy(boost::shared_ptr<KyBroker> broker)
    : fProxy(broker->getProxy("KyLogger")) {
}

void KyLoggerProxy::error(const std::string& module, const std::string& text) {
  fProxy->callVoid("error", module, text);
}

void KyLoggerProxy::warn(const std::string& module, const std::string& text) {
  fProxy->callVoid("warn", module, text);
}

void KyLoggerProxy::info(const std::string& module, const std::string& text) {
  fProxy->callVoid("info", module, text);
}

void KyLoggerProxy::debug(const std::string& module, const std::string& text) {
  fProxy->callVoid("debug", module, text);
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "ky/proxy.h"

namespace Ky {

KyProxy::KyProxy(boost::shared_ptr<KyBroker> broker, std::string module)
    : fBroker(std::move(broker)), fModule(std::move(module)) {
}

}  // namespace Ky

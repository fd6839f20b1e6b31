// SPDX-License-Identifier: Apache-2.0
#include "broker/start_broker.h"

#include "broker/main_broker.h"
#include "broker/peer_broker.h"

namespace Ky {

std::unique_ptr<BrokerCore> startBroker(KyBrokerOptions options) {
  const bool listens = options.listen || !options.listenInProcess.empty();
  const bool connects = options.parent || !options.parentInProcess.empty();
  if (listens == connects)
    throw KyError(options.name, "", "a broker either listens or has a parent");
  std::unique_ptr<BrokerCore> core;
  if (listens)
    core = std::make_unique<MainBroker>(std::move(options));
  else
    core = std::make_unique<PeerBroker>(std::move(options));
  core->start();
  return core;
}

}  // namespace Ky

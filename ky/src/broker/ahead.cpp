// SPDX-License-Identifier: Apache-2.0
#include "ky/ahead.h"

#include "broker/broker_core.h"
#include "broker/calls_ahead.h"
#include "zu/log.h"

namespace Ky {

KyRead KyRead::presenceOf(const std::string& module) {
  return {kBrokerModule, "isModulePresent", {module}};
}

KyWrite KyWrite::registration() {
  return {kBrokerModule, "registerModule"};
}

KyAhead::KyAhead(const boost::shared_ptr<KyBroker>& broker, const KyReads& reads, KyWrites writes)
    : fBroker(broker) {
  CallSender* sender = fBroker->fCore->sender();
  if (sender == nullptr || !fBroker->offers(kBrokerModule, kPipelining)) return;
  fCalls = std::make_unique<CallsAhead>(*sender, reads, std::move(writes),
                                        fBroker->fCore->options().patience.call);
}

KyAhead::~KyAhead() {
  for (const KyError& error : finish()) zu::log::error("ky", "ahead") << error.toString();
}

std::vector<KyError> KyAhead::finish() {
  return fCalls ? fCalls->finish() : std::vector<KyError>();
}

}  // namespace Ky

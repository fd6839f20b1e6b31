// SPDX-License-Identifier: Apache-2.0
#include "lookout/broker_loan.h"

#include <utility>

namespace Lookout {
namespace {

// Of the whole process: a plug-in's initBroker() is told no more than a name and an address.
BrokerLoan* current = nullptr;

bool isLike(const Ky::KyBroker& broker, const Ky::KyBrokerOptions& wanted) {
  return broker.getName() == wanted.name && broker.address() == wanted.parent &&
         broker.isEncrypted() == wanted.keys.has_value();
}

}  // namespace

BrokerLoan::BrokerLoan(boost::shared_ptr<Ky::KyBroker> broker) : fBroker(std::move(broker)) {
  current = this;
}

BrokerLoan::~BrokerLoan() {
  current = nullptr;
}

boost::shared_ptr<Ky::KyBroker> BrokerLoan::take(const Ky::KyBrokerOptions& wanted) {
  if (current == nullptr || current->fTaken || !current->fBroker) return nullptr;
  const auto& broker = current->fBroker;
  if (!isLike(*broker, wanted) || broker->connection() != Ky::KyConnection::Connected)
    return nullptr;
  current->fTaken = true;
  return broker;
}

}  // namespace Lookout

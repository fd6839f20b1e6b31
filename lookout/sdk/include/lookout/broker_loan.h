// SPDX-License-Identifier: Apache-2.0
// Hands the host's connection to a robot over to the plug-in, which would otherwise make a second
// one: over a slow link that takes four to six round trips.
#pragma once

#include <boost/shared_ptr.hpp>

#include "ky/broker.h"

namespace Lookout {

// While it lives, WidgetInterface::initBroker() takes this broker instead of making one, if it is
// connected and is what would be made: of the same name, for the same address, encrypted or not.
// Only once. GUI thread; one at a time.
class BrokerLoan {
 public:
  // Null lends nothing.
  explicit BrokerLoan(boost::shared_ptr<Ky::KyBroker> broker);
  // What was not taken can't be taken any more.
  ~BrokerLoan();
  BrokerLoan(const BrokerLoan&) = delete;
  BrokerLoan& operator=(const BrokerLoan&) = delete;

  // Then the broker is the widget's, to be ended after it.
  bool isTaken() const { return fTaken; }

  // The lent broker, which is taken from here on, or null when there is none like this.
  static boost::shared_ptr<Ky::KyBroker> take(const Ky::KyBrokerOptions& wanted);

 private:
  boost::shared_ptr<Ky::KyBroker> fBroker;
  bool fTaken = false;
};

}  // namespace Lookout

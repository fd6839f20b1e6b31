// SPDX-License-Identifier: Apache-2.0
#include "lookout/widget_interface.h"

#include "lookout/broker_loan.h"
#include "lookout/robot_broker.h"

WidgetInterface::~WidgetInterface() = default;

void WidgetInterface::initBroker(boost::shared_ptr<Ky::KyBroker>& broker,
                                 const std::string& brokerName, const std::string& robotIp,
                                 int robotPort, const std::string& /*resourcePath*/) {
  const Ky::KyBrokerOptions options = Lookout::robotBrokerOptions(brokerName, {robotIp, robotPort});
  const auto lent = Lookout::BrokerLoan::take(options);
  broker = lent ? lent : Ky::KyBroker::create(options);
}

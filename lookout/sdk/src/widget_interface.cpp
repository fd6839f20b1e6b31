// SPDX-License-Identifier: Apache-2.0
#include "lookout/widget_interface.h"

#include "lookout/robot_broker.h"

WidgetInterface::~WidgetInterface() = default;

void WidgetInterface::initBroker(boost::shared_ptr<Ky::KyBroker>& broker,
                                 const std::string& brokerName, const std::string& robotIp,
                                 int robotPort, const std::string& /*resourcePath*/) {
  broker = Ky::KyBroker::create(Lookout::robotBrokerOptions(brokerName, {robotIp, robotPort}));
}

#include "lookout/widget_interface.h"

WidgetInterface::~WidgetInterface() = default;

void WidgetInterface::initBroker(boost::shared_ptr<Ky::KyBroker>& broker,
                                 const std::string& brokerName, const std::string& robotIp,
                                 int robotPort, const std::string& /*resourcePath*/) {
  Ky::KyBrokerOptions options;
  options.name = brokerName;
  options.parent = Ky::KyAddress{robotIp, robotPort};
  // A robot on loopback needs no keys; any other is only reached with those of this desktop.
  if (!options.parent->isLoopback() && Ky::KyKeyStore(Ky::KyKeyStore::defaultFolder()).exists())
    options.keys = Ky::KyKeyStore::defaultFolder();
  broker = Ky::KyBroker::create(std::move(options));
}

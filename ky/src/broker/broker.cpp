// SPDX-License-Identifier: Apache-2.0
#include "ky/broker.h"

#include <algorithm>

#include "broker/broker_core.h"
#include "broker/start_broker.h"
#include "ky/module.h"
#include "ky/proxy.h"

namespace Ky {

KyBroker::KyBroker(std::unique_ptr<BrokerCore> core) : fCore(std::move(core)) {
}

KyBroker::~KyBroker() {
  shutdown();
}

boost::shared_ptr<KyBroker> KyBroker::create(KyBrokerOptions options) {
  return boost::shared_ptr<KyBroker>(new KyBroker(startBroker(std::move(options))));
}

const std::string& KyBroker::getName() const {
  return fCore->options().name;
}

KyAddress KyBroker::address() const {
  return fCore->address();
}

bool KyBroker::isEncrypted() const {
  return fCore->options().keys.has_value();
}

boost::shared_ptr<KyProxy> KyBroker::getProxy(const std::string& module, int check) {
  if (check != 0 && !isModulePresent(module)) throwUnknownModule(module, "");
  return boost::make_shared<KyProxy>(shared_from_this(), module);
}

bool KyBroker::isModulePresent(const std::string& module) {
  return fCore->localModules().contains(module) || fCore->isPresentElsewhere(module);
}

bool KyBroker::offers(const std::string& module, const std::string& what) const {
  return fCore->offers(module + "." + what);
}

std::vector<std::string> KyBroker::moduleNames() {
  std::vector<std::string> names = fCore->namesElsewhere();
  for (std::string& name : fCore->localModules().names()) names.push_back(std::move(name));
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

KyValue KyBroker::call(const std::string& module, const std::string& method,
                       KyValue::Array arguments,
                       std::optional<std::chrono::milliseconds> deadline) {
  return fCore->call(module, method, std::move(arguments),
                     deadline.value_or(fCore->options().patience.call));
}

std::unique_ptr<KyStreamSender> KyBroker::sendStream(const KyPeer& peer, std::int64_t id) {
  const auto stream = fCore->openOutgoing(peer.id, id);
  const boost::weak_ptr<KyBroker> self = weak_from_this();
  return std::make_unique<KyStreamSender>(
      stream,
      [self, stream] {
        if (const auto broker = self.lock()) broker->fCore->streamWaits(stream);
      },
      [self, stream] {
        if (const auto broker = self.lock()) broker->fCore->endOutgoing(stream);
      });
}

std::unique_ptr<KyStreamReceiver> KyBroker::receiveStream(
    std::size_t depth, std::optional<std::chrono::milliseconds> idle, std::size_t bytes) {
  const auto stream = std::make_shared<IncomingStream>(depth, idle, bytes);
  const std::int64_t id = fCore->openIncoming(stream);
  const boost::weak_ptr<KyBroker> self = weak_from_this();
  return std::make_unique<KyStreamReceiver>(id, stream, [self, id] {
    if (const auto broker = self.lock()) broker->fCore->closeIncoming(id);
  });
}

void KyBroker::setPreference(const std::string& name, const std::string& value) {
  const zu::MutexLock guard(fPreferencesMutex);
  fPreferences[name] = value;
}

std::string KyBroker::preference(const std::string& name) const {
  const zu::MutexLock guard(fPreferencesMutex);
  const auto found = fPreferences.find(name);
  return found == fPreferences.end() ? std::string() : found->second;
}

void KyBroker::registerModule(boost::shared_ptr<KyModule> module) {
  const std::string name = module->getName();
  fCore->localModules().add(std::move(module));
  try {
    fCore->announce(name);
  } catch (...) {
    fCore->localModules().remove(name);
    throw;
  }
  fCore->offersChanged();
}

void KyBroker::unregisterModule(const std::string& name) {
  if (!fCore->localModules().contains(name)) return;
  fCore->withdraw(name);
  fCore->localModules().remove(name);
  fCore->offersChanged();
}

KyConnection KyBroker::connection() const {
  return fCore->connection();
}

std::unique_ptr<KyConnectionListener> KyBroker::onConnection(
    std::function<void(KyConnection, const std::string&)> callback) {
  return fCore->onConnection(std::move(callback));
}

KyStatistics KyBroker::statistics() const {
  return fCore->statistics();
}

void KyBroker::disconnect() {
  fCore->disconnect();
}

void KyBroker::shutdown() {
  fCore->localModules().removeAll();
  fCore->close();
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "broker/local_modules.h"

#include "ky/module.h"
#include "zu/log.h"

namespace Ky {
namespace {

Outcome run(KyModule& module, const LocalCall& call) {
  try {
    return Outcome::success(module.invoke(call.caller, call.method, call.arguments));
  } catch (const KyError& error) {
    return Outcome::failure(error.module(), error.method(), error.what());
  } catch (const std::exception& error) {
    return Outcome::failure(call.module, call.method, error.what());
  } catch (...) {
    return Outcome::failure(call.module, call.method, "failed for an unknown reason");
  }
}

}  // namespace

void LocalModules::add(boost::shared_ptr<KyModule> module) {
  const std::string name = module->getName();
  auto entry = std::make_shared<Entry>();
  entry->module = std::move(module);
  const zu::MutexLock guard(fMutex);
  if (!fEntries.emplace(name, std::move(entry)).second)
    throw KyError(name, "", "a module of this name is registered with this broker already");
}

bool LocalModules::contains(const std::string& name) const {
  return find(name) != nullptr;
}

std::vector<std::string> LocalModules::names() const {
  const zu::MutexLock guard(fMutex);
  std::vector<std::string> names;
  for (const auto& [name, entry] : fEntries) names.push_back(name);
  return names;
}

Offers::Set LocalModules::offers() const {
  const zu::MutexLock guard(fMutex);
  Offers::Set offers;
  for (const auto& [name, entry] : fEntries) {
    for (const std::string& what : entry->module->offered())
      offers.insert(std::string(name).append(".").append(what));
  }
  return offers;
}

std::shared_ptr<LocalModules::Entry> LocalModules::find(const std::string& name) const {
  const zu::MutexLock guard(fMutex);
  const auto found = fEntries.find(name);
  return found == fEntries.end() ? nullptr : found->second;
}

void LocalModules::remove(const std::string& name) {
  std::shared_ptr<Entry> entry;
  {
    const zu::MutexLock guard(fMutex);
    const auto found = fEntries.find(name);
    if (found == fEntries.end()) return;
    if (found->second->queue.isCurrentThread())
      throw KyError(name, "", "a module can't be removed by its own method");
    entry = std::move(found->second);
    fEntries.erase(found);
  }
  release(std::move(entry));
}

void LocalModules::removeAll() {
  for (const std::string& name : names()) remove(name);
}

void LocalModules::release(std::shared_ptr<Entry> entry) {
  entry->queue.stop();
  entry->module->stop();
}

bool LocalModules::call(LocalCall call, const std::function<void(Outcome)>& done) {
  const auto entry = find(call.module);
  if (!entry) return false;
  if (entry->queue.isCurrentThread()) {
    done(run(*entry->module, call));
    return true;
  }
  const auto shared = std::make_shared<const LocalCall>(std::move(call));
  // The entry outlives its queue's jobs: release() waits for them.
  KyModule* module = entry->module.get();
  const auto refuse = [shared, done](const char* why) {
    done(Outcome::failure(shared->module, shared->method, why));
  };
  const auto pushed =
      entry->queue.push({.run = [module, shared, done] { done(run(*module, *shared)); },
                         .cancel = [refuse] { refuse("the module is going, or was too busy"); },
                         .deadline = shared->deadline});
  if (pushed == CallQueue::Pushed::Full) refuse("too many calls are waiting for this module");
  if (pushed == CallQueue::Pushed::Stopped) refuse("the module is going");
  return true;
}

void LocalModules::peerLeft(const KyPeer& peer) {
  for (const std::string& name : names()) {
    const auto entry = find(name);
    if (!entry) continue;
    KyModule* module = entry->module.get();
    entry->queue.push({.run =
                           [module, peer] {
                             try {
                               module->peerLeft(peer);
                             } catch (const std::exception& error) {
                               zu::log::error("ky", "peerLeft") << error.what();
                             }
                           },
                       .cancel = [] {},
                       .deadline = std::chrono::steady_clock::time_point::max()});
  }
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// The modules that live in this process, each with its call thread.
#pragma once

#include <boost/shared_ptr.hpp>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "broker/call_queue.h"
#include "broker/offers.h"
#include "broker/outcome.h"
#include "ky/peer.h"
#include "ky/value.h"
#include "zu/mutex.h"

namespace Ky {

class KyModule;

// A call on its way to a local module.
struct LocalCall {
  KyPeer caller;
  std::string module;
  std::string method;
  KyValue::Array arguments;
  std::chrono::steady_clock::time_point deadline;
};

// Thread-safe.
class LocalModules {
 public:
  // Throws KyError when there is one of that name.
  void add(boost::shared_ptr<KyModule> module);
  bool contains(const std::string& name) const;
  std::vector<std::string> names() const;
  Offers::Set offers() const;
  // Waits for the running call, stops the module and releases it. Throws KyError when called from
  // the module's own method.
  void remove(const std::string& name);
  void removeAll();

  // Has the module called on its call thread, or on this one if that is it; `done` is called once,
  // on whatever thread. False when there is no such module.
  bool call(LocalCall call, const std::function<void(Outcome)>& done);
  // Tells every module.
  void peerLeft(const KyPeer& peer);

 private:
  struct Entry {
    boost::shared_ptr<KyModule> module;
    CallQueue queue;
  };
  std::shared_ptr<Entry> find(const std::string& name) const;
  static void release(std::shared_ptr<Entry> entry);

  mutable zu::Mutex fMutex;
  std::map<std::string, std::shared_ptr<Entry>> fEntries ZU_GUARDED_BY(fMutex);
};

}  // namespace Ky

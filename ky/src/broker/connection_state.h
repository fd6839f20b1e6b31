// SPDX-License-Identifier: Apache-2.0
// Whether a peer is connected, for whoever asks, waits or listens.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "ky/broker.h"
#include "zu/mutex.h"

namespace Ky {

// Thread-safe.
class ConnectionState {
 public:
  using Callback = std::function<void(KyConnection, const std::string& why)>;

  ConnectionState();
  ~ConnectionState();

  KyConnection get() const;
  // Why the connection is not there (any more).
  std::string why() const;
  // Tells the listeners, on this thread, when the connection changes.
  void set(KyConnection connection, const std::string& why);
  // Something went wrong on the way to a connection; it is still tried.
  void setProblem(const std::string& why, bool isFinal);
  // Until connected, closed, a final problem or the time is over; the state then.
  // `what`: see KyWait.
  KyConnection waitForConnection(std::chrono::milliseconds atMost,
                                 std::function<std::string()> what);

  std::unique_ptr<KyConnectionListener> listen(Callback callback);

 private:
  struct Listeners;
  mutable zu::Mutex fMutex;
  zu::ConditionVariable fChanged;
  KyConnection fConnection ZU_GUARDED_BY(fMutex) = KyConnection::Connecting;
  std::string fWhy ZU_GUARDED_BY(fMutex) = "no answer";
  bool fGivenUp ZU_GUARDED_BY(fMutex) = false;
  std::shared_ptr<Listeners> fListeners;
};

}  // namespace Ky

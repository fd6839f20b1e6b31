// Whether a peer is connected, for whoever asks, waits or listens.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "ky/broker.h"

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
  KyConnection waitForConnection(std::chrono::milliseconds atMost);

  std::unique_ptr<KyConnectionListener> listen(Callback callback);

 private:
  struct Listeners;
  mutable std::mutex fMutex;
  std::condition_variable fChanged;
  KyConnection fConnection = KyConnection::Connecting;  // guarded by fMutex
  std::string fWhy = "no answer";                       // guarded by fMutex
  bool fGivenUp = false;                                // guarded by fMutex
  std::shared_ptr<Listeners> fListeners;
};

}  // namespace Ky

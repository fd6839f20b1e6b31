// SPDX-License-Identifier: Apache-2.0
#include "broker/connection_state.h"

#include <list>
#include <utility>

#include "ky/meanwhile.h"

namespace Ky {

// Outlives the state as long as a listener holds it.
struct ConnectionState::Listeners {
  zu::Mutex mutex;  // held also while they run
  std::list<Callback> callbacks ZU_GUARDED_BY(mutex);
};

namespace {

template <class Listeners, class Position>
class Registration : public KyConnectionListener {
 public:
  Registration(std::shared_ptr<Listeners> listeners, Position position)
      : fListeners(std::move(listeners)), fPosition(position) {}
  ~Registration() override {
    const zu::MutexLock guard(fListeners->mutex);
    fListeners->callbacks.erase(fPosition);
  }

 private:
  std::shared_ptr<Listeners> fListeners;
  Position fPosition;
};

}  // namespace

ConnectionState::ConnectionState() : fListeners(std::make_shared<Listeners>()) {
}
ConnectionState::~ConnectionState() = default;

KyConnection ConnectionState::get() const {
  const zu::MutexLock guard(fMutex);
  return fConnection;
}

std::string ConnectionState::why() const {
  const zu::MutexLock guard(fMutex);
  return fWhy;
}

void ConnectionState::set(KyConnection connection, const std::string& why) {
  {
    const zu::MutexLock guard(fMutex);
    if (fConnection == connection || fConnection == KyConnection::Closed) return;
    fConnection = connection;
    fWhy = why;
    fChanged.notifyAll();
  }
  const zu::MutexLock guard(fListeners->mutex);
  for (const Callback& callback : fListeners->callbacks) callback(connection, why);
}

void ConnectionState::setProblem(const std::string& why, bool isFinal) {
  const zu::MutexLock guard(fMutex);
  fWhy = why;
  fGivenUp = fGivenUp || isFinal;
  fChanged.notifyAll();
}

KyConnection ConnectionState::waitForConnection(std::chrono::milliseconds atMost,
                                                std::function<std::string()> what) {
  KyWait wait(std::move(what));
  const auto end = std::chrono::steady_clock::now() + atMost;
  const zu::MutexLock guard(fMutex);
  while (fConnection == KyConnection::Connecting && !fGivenUp) {
    if (fChanged.waitUntil(fMutex, wait.until(end))) continue;
    if (std::chrono::steady_clock::now() >= end) break;
    const zu::MutexUnlock meanwhile(fMutex);
    wait.work();
  }
  return fConnection;
}

std::unique_ptr<KyConnectionListener> ConnectionState::listen(Callback callback) {
  const zu::MutexLock guard(fListeners->mutex);
  fListeners->callbacks.push_back(std::move(callback));
  const auto position = std::prev(fListeners->callbacks.end());
  return std::make_unique<Registration<Listeners, decltype(position)>>(fListeners, position);
}

}  // namespace Ky

#include "broker/connection_state.h"

#include <list>

namespace Ky {

// Outlives the state as long as a listener holds it.
struct ConnectionState::Listeners {
  std::mutex mutex;
  std::list<Callback> callbacks;  // guarded by mutex, also while they run
};

namespace {

template <class Listeners, class Position>
class Registration : public KyConnectionListener {
 public:
  Registration(std::shared_ptr<Listeners> listeners, Position position)
      : fListeners(std::move(listeners)), fPosition(position) {}
  ~Registration() override {
    const std::lock_guard guard(fListeners->mutex);
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
  const std::lock_guard guard(fMutex);
  return fConnection;
}

std::string ConnectionState::why() const {
  const std::lock_guard guard(fMutex);
  return fWhy;
}

void ConnectionState::set(KyConnection connection, const std::string& why) {
  {
    const std::lock_guard guard(fMutex);
    if (fConnection == connection || fConnection == KyConnection::Closed) return;
    fConnection = connection;
    fWhy = why;
    fChanged.notify_all();
  }
  const std::lock_guard guard(fListeners->mutex);
  for (const Callback& callback : fListeners->callbacks) callback(connection, why);
}

void ConnectionState::setProblem(const std::string& why, bool isFinal) {
  const std::lock_guard guard(fMutex);
  fWhy = why;
  fGivenUp = fGivenUp || isFinal;
  fChanged.notify_all();
}

KyConnection ConnectionState::waitForConnection(std::chrono::milliseconds atMost) {
  std::unique_lock lock(fMutex);
  fChanged.wait_for(lock, atMost,
                    [this] { return fConnection != KyConnection::Connecting || fGivenUp; });
  return fConnection;
}

std::unique_ptr<KyConnectionListener> ConnectionState::listen(Callback callback) {
  const std::lock_guard guard(fListeners->mutex);
  fListeners->callbacks.push_back(std::move(callback));
  const auto position = std::prev(fListeners->callbacks.end());
  return std::make_unique<Registration<Listeners, decltype(position)>>(fListeners, position);
}

}  // namespace Ky

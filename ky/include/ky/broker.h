// SPDX-License-Identifier: Apache-2.0
// A broker is one process's place in the robot's runtime: it holds modules, reaches those of
// others, and knows when a peer is lost.
//
// The robot runs the main broker, which listens. A desktop or program opens a broker of its own
// with the main broker as its parent, and is from then on a peer on that one connection: calls go
// both ways, and its modules can be called from everywhere.
#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ky/address.h"
#include "ky/error.h"
#include "ky/keys.h"
#include "ky/peer.h"
#include "ky/stream.h"
#include "ky/value.h"
#include "zu/mutex.h"

namespace Ky {

class KyModule;
class KyProxy;
class BrokerCore;

// Brokers that share one of these can reach each other without a network, by name, with the same
// semantics as over TCP. Thread-safe.
class KyInProcess {
 public:
  KyInProcess();
  ~KyInProcess();
  KyInProcess(const KyInProcess&) = delete;
  KyInProcess& operator=(const KyInProcess&) = delete;

 private:
  friend class BrokerCore;
  struct Impl;
  std::unique_ptr<Impl> fImpl;
};

// How patient a broker is. The defaults tell of silence within 2 s, and give nobody up before 15 s.
struct KyPatience {
  std::chrono::milliseconds call{3000};      // a call without a deadline of its own
  std::chrono::milliseconds connect{2000};   // create() with a parent
  std::chrono::milliseconds heartbeat{400};  // how often a silent side says that it is alive
  std::chrono::milliseconds silence{1600};   // calls to a peer silent for this long fail at once
  std::chrono::milliseconds keep{15000};     // what belongs to a silent peer is kept for this long
  std::chrono::milliseconds reconnectMin{500};
  std::chrono::milliseconds reconnectMax{2000};
};

// What a peer may send; more is refused before it is allocated.
struct KyLimits {
  std::size_t messageBytes = 32u << 20;  // one message, all its parts
  std::size_t packedBytes = 4u << 20;    // the packed part of a message
  std::size_t values = 262144;           // values in one message
  int depth = 32;                        // arrays inside arrays
};

struct KyBrokerOptions {
  std::string name;
  // Exactly one of these: listen here (a main broker) or connect there (a peer).
  std::optional<KyAddress> listen;
  std::optional<KyAddress> parent;
  // Instead of TCP: both name the meeting place inside `inProcess`.
  boost::shared_ptr<KyInProcess> inProcess;
  std::string listenInProcess;
  std::string parentInProcess;
  // With a parent: return at once and keep trying, instead of failing when it can't be reached
  // within patience.connect.
  bool connectLater = false;
  // Own keys and known peers. A main broker beyond loopback must have them, or be told `insecure`.
  // With a parent: the parent's public key is found under its address ("HOST:PORT").
  std::optional<std::filesystem::path> keys;
  bool insecure = false;
  // A main broker: says that peers may send calls without waiting for the answers of those before;
  // see ky/ahead.h.
  bool pipelining = false;
  KyPatience patience;
  KyLimits limits;
};

enum class KyConnection {
  Connecting,  // never been connected yet
  Connected,
  Silent,  // no sign of life: calls fail at once. Connected follows as if nothing had been, or Lost
  Lost,    // given up by one side or restarted: what belonged to this broker is gone there; it
           // connects again by itself, as a new peer
  Closed,  // shutdown() or disconnect() was called
};

// Counted since create().
struct KyStatistics {
  std::uint64_t bytesIn = 0;
  std::uint64_t bytesOut = 0;
  std::chrono::microseconds roundTrip{0};  // the last heartbeat's; 0 before the first
  // Calls to the parent that ended without an answer: too late, or while it was not connected or
  // the module mute.
  std::uint64_t unanswered = 0;
  int mute = 0;  // modules of the parent's that are mute now, see KyBroker::call()
  // What the streams that come in carry, in the words of those who receive them (see
  // KyStreamReceiver::describe()); the oldest stream first.
  std::vector<std::string> streams;
};

// Stops listening when destroyed; after that the callback is not running.
class KyConnectionListener {
 public:
  virtual ~KyConnectionListener() = default;
};

// Thread-safe. A broker and its modules hold each other: call shutdown() to release them.
class KyBroker : public boost::enable_shared_from_this<KyBroker> {
 public:
  // Starts its threads, listens or connects. Throws KyError that says what to do when the port is
  // taken, the parent can't be reached, or keys are missing or refused.
  static boost::shared_ptr<KyBroker> create(KyBrokerOptions options);
  // Calls shutdown().
  ~KyBroker();
  KyBroker(const KyBroker&) = delete;
  KyBroker& operator=(const KyBroker&) = delete;

  const std::string& getName() const;
  // The address listened on, with the real port; the parent's for a peer.
  KyAddress address() const;
  // Whether it has keys: everything over its sockets is encrypted then.
  bool isEncrypted() const;

  // A proxy to a module of this broker, its parent or any of the parent's peers. With `check` the
  // module must exist now, else KyError; with 0 nothing is asked and the first call tells.
  boost::shared_ptr<KyProxy> getProxy(const std::string& module, int check = 1);
  // Throws KyError when the parent can't be asked.
  bool isModulePresent(const std::string& module);
  // The names of all modules in reach, sorted.
  std::vector<std::string> moduleNames();

  // Whether a module in reach has said that it does `what` beyond what every robot's module of its
  // name does. Asks nobody, so it costs nothing; false while not connected for the first time.
  bool offers(const std::string& module, const std::string& what) const;

  // Calls a module wherever it lives, waits for its answer and returns it. Throws the callee's
  // KyError, or one of the runtime's own: unknown module, unknown method, wrong arguments, value
  // too large, no answer in time, peer silent or lost. A module that left a call unanswered is
  // mute: further calls fail at once until it answers a ping, which the runtime sends by itself.
  KyValue call(const std::string& module, const std::string& method, KyValue::Array arguments,
               std::optional<std::chrono::milliseconds> deadline = std::nullopt);

  // A stream to a peer that has told its id in a call to one of this broker's modules. Main brokers
  // only: throws KyError on a peer's. One that the peer has under this id already ends.
  std::unique_ptr<KyStreamSender> sendStream(const KyPeer& peer, std::int64_t id);
  // A stream whose id is to be told to a module of the robot's. Of the values that were not taken
  // yet it keeps the newest `depth`, and of those no more than have `bytes` in their binaries, but
  // always the newest. With `idle` it is closed when next() has not been called for so long: for
  // what is asked for as long as somebody wants it. Peers only: throws KyError on a main broker.
  std::unique_ptr<KyStreamReceiver> receiveStream(
      std::size_t depth = 1, std::optional<std::chrono::milliseconds> idle = std::nullopt,
      std::size_t bytes = SIZE_MAX);

  // What the user of this program wishes where there is a choice ("KyVideoDevice.pictures":
  // "exact"); whoever has the choice looks it up and says so. Empty where nothing was set.
  void setPreference(const std::string& name, const std::string& value);
  std::string preference(const std::string& name) const;

  // Makes a module callable from everywhere and keeps it alive. Throws KyError when this broker
  // has a module of that name already. Modules call these through KyModule::createModule().
  void registerModule(boost::shared_ptr<KyModule> module);
  // Waits for a running call of the module, then releases it. Unknown names are ignored.
  void unregisterModule(const std::string& name);

  // Of the connection to the parent; a main broker is always Connected until closed. Only time that
  // this side could listen counts as silence.
  KyConnection connection() const;
  // `callback` runs on the broker's io thread at every change: it must return at once and not call
  // the broker. The text says why ("no sign of life for 1.6 s", ...).
  std::unique_ptr<KyConnectionListener> onConnection(
      std::function<void(KyConnection, const std::string& why)> callback);
  KyStatistics statistics() const;

  // Ends the connection for good: from here on nothing that its modules do reaches anybody, their
  // goodbyes included; calls in flight fail. They live on until shutdown(). Returns at once;
  // idempotent.
  void disconnect();

  // Stops and releases all modules, still connected, so that their destructors can say goodbye;
  // then says goodbye to the peers and ends the threads. Calls in flight fail. Idempotent. Not to
  // be called from a module's method.
  void shutdown();

 private:
  friend class KyAhead;
  explicit KyBroker(std::unique_ptr<BrokerCore> core);
  std::unique_ptr<BrokerCore> fCore;
  mutable zu::Mutex fPreferencesMutex;
  std::map<std::string, std::string> fPreferences ZU_GUARDED_BY(fPreferencesMutex);
};

}  // namespace Ky

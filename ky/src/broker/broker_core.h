// SPDX-License-Identifier: Apache-2.0
// What a main broker and a peer have in common.
#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>
#include <zmq.hpp>

#include "broker/calls_ahead.h"
#include "broker/local_modules.h"
#include "broker/offers.h"
#include "broker/pending_calls.h"
#include "broker/streams.h"
#include "ky/broker.h"
#include "transport/io_loop.h"
#include "transport/socket_io.h"
#include "wire/message.h"
#include "zu/mutex.h"

namespace Ky {

using SteadyTime = std::chrono::steady_clock::time_point;

struct KyInProcess::Impl {
  zmq::context_t context;
};

// Thread-safe but for what says otherwise.
class BrokerCore : protected IoLoop::Client {
 public:
  // Derived classes call close() in theirs.
  ~BrokerCore() override;

  // Listens, or connects and waits for the parent unless told otherwise. Once, before all else.
  virtual void start() = 0;

  const KyBrokerOptions& options() const { return fOptions; }
  LocalModules& localModules() { return fLocal; }
  // "MODULE.WHAT", of any module in reach.
  bool offers(const std::string& offer) const;
  virtual KyStatistics statistics() const;

  // Streams go from a robot's modules to its peers: elsewhere these throw KyError.
  virtual std::shared_ptr<OutgoingStream> openOutgoing(const std::string& peer, std::int64_t id);
  virtual void streamWaits(const std::shared_ptr<OutgoingStream>&) {}
  virtual void endOutgoing(const std::shared_ptr<OutgoingStream>&) {}
  virtual std::int64_t openIncoming(const std::shared_ptr<IncomingStream>& stream);
  virtual void closeIncoming(std::int64_t) {}

  KyValue call(const std::string& module, const std::string& method, KyValue::Array arguments,
               std::chrono::milliseconds deadline);

  // Null where calls can't be sent ahead.
  virtual CallSender* sender() { return nullptr; }

  // After a local module came, and after one went. May throw KyError when it is refused.
  virtual void announce(const std::string& module) = 0;
  virtual void withdraw(const std::string& module) = 0;
  // Modules that are not local.
  virtual bool isPresentElsewhere(const std::string& module) = 0;
  virtual std::vector<std::string> namesElsewhere() = 0;

  // To be told after both.
  void offersChanged();

  virtual KyAddress address() const = 0;
  virtual KyConnection connection() const = 0;
  virtual std::unique_ptr<KyConnectionListener> onConnection(
      std::function<void(KyConnection, const std::string&)> callback) = 0;

  // From here on nobody is reached. Returns at once; the sockets are closed soon.
  void disconnect();
  // Says goodbye and ends the thread; the modules are gone already. Idempotent.
  void close();

 protected:
  explicit BrokerCore(KyBrokerOptions options);

  // Waits for the answer of a call that goes out.
  virtual KyValue callElsewhere(const std::string& module, const std::string& method,
                                KyValue::Array arguments, std::chrono::milliseconds deadline) = 0;
  // Calls fail from now on.
  virtual void setClosed() = 0;
  // On the io thread: the last word to the other side, then closes the sockets. Idempotent.
  virtual void closeSockets() = 0;

  void startLoop() { fLoop.start(*this); }
  bool post(std::function<void()> task) { return fLoop.post(std::move(task)); }
  std::int64_t nextId() { return ++fLastId; }
  // Where the sockets live: a context of our own, or the one shared within the process.
  zmq::context_t& context();
  void setCommonOptions(zmq::socket_t& socket) const;

  // On the io thread: counts what goes over a socket.
  Sent send(zmq::socket_t& socket, const std::string& route, const Parts& parts);
  std::optional<Received> receive(zmq::socket_t& socket, bool hasRoute);
  // Logs why a message is dropped, but never floods the log on behalf of whoever sends rubbish.
  void reportDropped(const std::string& why);

  // Has a local module called for somebody outside; the answer goes out over sendAnswer(). False
  // when there is no such module.
  bool callForPeer(const KyPeer& caller, const std::string& route, Message message);
  // On the io thread: to whom it has changed for since it was told last.
  virtual void sayOffers() = 0;
  // From any thread.
  virtual void sendAnswer(const std::string& route, Parts parts) = 0;
  // An answer that is too large becomes an error.
  Parts encodeAnswer(std::int64_t id, Outcome outcome) const;

  void setRoundTrip(std::chrono::microseconds time) { fRoundTrip = time.count(); }

  const KyBrokerOptions fOptions;
  PendingCalls fPending;
  LocalModules fLocal;
  Offers fOffers;  // of others' modules

 private:
  zmq::context_t fOwnContext;
  std::atomic<std::int64_t> fLastId{0};
  std::atomic<std::uint64_t> fBytesIn{0};
  std::atomic<std::uint64_t> fBytesOut{0};
  std::atomic<std::int64_t> fRoundTrip{0};  // microseconds
  std::uint64_t fDropped = 0;               // io thread
  zu::Mutex fCloseMutex;
  bool fClosed ZU_GUARDED_BY(fCloseMutex) = false;
  IoLoop fLoop;  // last: its thread uses all the others
};

// The deadline that a Call message asks for, kept within reason.
SteadyTime deadlineOf(const Message& call);

// Throws the runtime's error about a module nobody has.
[[noreturn]] void throwUnknownModule(const std::string& module, const std::string& method);

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// The broker of a desktop or program: a peer on one connection to its parent.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "broker/awake_clock.h"
#include "broker/broker_core.h"
#include "broker/connection_state.h"
#include "broker/mute_modules.h"
#include "transport/connection_monitor.h"
#include "transport/link.h"
#include "zu/log.h"

namespace Ky {

// Keeps the connection: says hello, listens for signs of life, and goes on with a fresh socket when
// the parent falls silent, so that nothing of before reaches the parent afterwards. Who comes back
// in time, and still knows this peer's id, has only been silent; who does not is lost.
class PeerBroker : public BrokerCore, private CallSender {
 public:
  explicit PeerBroker(KyBrokerOptions options);
  ~PeerBroker() override;

  // Throws KyError when the parent can't be reached in time, unless that is for later.
  void start() override;
  void announce(const std::string& module) override;
  void withdraw(const std::string& module) override;
  bool isPresentElsewhere(const std::string& module) override;
  std::vector<std::string> namesElsewhere() override;
  CallSender* sender() override { return this; }
  KyStatistics statistics() const override;
  KyAddress address() const override;
  KyConnection connection() const override { return fState.get(); }
  std::unique_ptr<KyConnectionListener> onConnection(
      std::function<void(KyConnection, const std::string&)> callback) override;
  std::int64_t openIncoming(const std::shared_ptr<IncomingStream>& stream) override;
  void closeIncoming(std::int64_t id) override;

 protected:
  KyValue callElsewhere(const std::string& module, const std::string& method,
                        KyValue::Array arguments, std::chrono::milliseconds deadline) override;
  void setClosed() override { fState.set(KyConnection::Closed, "closed"); }
  void closeSockets() override;
  std::vector<zmq::pollitem_t> waitFor() override;
  void work() override;
  void sendAnswer(const std::string& route, Parts parts) override;
  void sayOffers() override;

 private:
  SentCall send(const std::string& module, const std::string& method, KyValue::Array arguments,
                std::chrono::milliseconds deadline) override;
  Outcome await(const SentCall& call) override;
  void abandon(const SentCall& call) override { fPending.forget(call.id); }
  using BrokerCore::send;

  std::string parentName() const;
  void requireNotMute(const std::string& module, const std::string& method);
  void noteMute(const std::string& module, SteadyTime since);
  void probe(const std::string& module);
  void probeAgain();
  bool endProbe(std::int64_t call);
  void loadKeys();

  // All on the io thread.
  void openSocket();
  void setKeys();
  void sayHello();
  void handleEvent(ConnectionMonitor::Event event);
  bool sendToParent(Parts parts);
  void handle(Received received);
  void handle(Message message);
  void handleCall(Message call);
  void handleItem(Message item);
  void handleAnswer(Message answer);
  void handleWelcome(const Message& welcome);
  void handleBye(const std::string& reason);
  void keepAlive();
  void fallSilent(const std::string& why);
  void lose(const std::string& why, zu::log::Level level = zu::log::Level::warning);
  void startOver();

  // Asks a mute module whether it answers again: now and then anew, for a question may get lost.
  struct Probe {
    std::set<std::int64_t> calls;
    SteadyTime next;
    std::chrono::milliseconds interval;
  };

  std::string fId;     // until the parent is lost
  KyKeyPair fOwnKeys;  // empty without keys
  std::string fParentKey;
  ConnectionState fState;
  MuteModules fMute;
  std::atomic<std::uint64_t> fUnanswered{0};
  std::map<std::string, Probe> fProbes;  // of the mute modules, by name; io thread
  Offers::Set fOffersSaid;               // to the parent; io thread
  bool fConnected = false;               // io thread's own view
  AwakeClock fClock;
  AwakeClock::Time fLastHeard{0};
  std::optional<SteadyTime> fReopenAt;  // when to try a new socket
  SteadyTime fLastPing;
  SteadyTime fLastHello;
  std::int64_t fPingToken = 0;
  IncomingStreams fStreams;
  zmq::socket_t fSocket;
  std::optional<Link> fLink;                  // over the socket
  std::optional<ConnectionMonitor> fMonitor;  // refers to the socket
};

}  // namespace Ky

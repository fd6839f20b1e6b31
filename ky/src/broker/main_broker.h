// SPDX-License-Identifier: Apache-2.0
// The broker that listens: the middle of a robot's runtime.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "broker/awake_clock.h"
#include "broker/broker_core.h"
#include "broker/directory.h"
#include "transport/authenticator.h"
#include "transport/link.h"

namespace Ky {

// Answers its peers' calls, passes calls on between them, and notices when one falls silent: what
// belongs to it is kept until it has come back, over whatever connection, or been given up.
class MainBroker : public BrokerCore {
 public:
  // Listens. Throws KyError when it can't.
  explicit MainBroker(KyBrokerOptions options);
  ~MainBroker() override;

  void start() override { startLoop(); }
  void announce(const std::string&) override {}
  void withdraw(const std::string&) override {}
  bool isPresentElsewhere(const std::string& module) override;
  std::vector<std::string> namesElsewhere() override { return fDirectory.names(); }
  KyAddress address() const override { return fAddress; }
  KyConnection connection() const override;
  std::unique_ptr<KyConnectionListener> onConnection(
      std::function<void(KyConnection, const std::string&)> callback) override;
  std::shared_ptr<OutgoingStream> openOutgoing(const std::string& peer, std::int64_t id) override;
  void streamWaits(const std::shared_ptr<OutgoingStream>& stream) override;
  void endOutgoing(const std::shared_ptr<OutgoingStream>& stream) override;

 protected:
  KyValue callElsewhere(const std::string& module, const std::string& method,
                        KyValue::Array arguments, std::chrono::milliseconds deadline) override;
  void setClosed() override { fClosing = true; }
  void closeSockets() override;
  std::vector<zmq::pollitem_t> waitFor() override;
  void work() override;
  void sendAnswer(const std::string& route, Parts parts) override;
  void sayOffers() override;

 private:
  struct Peer {
    explicit Peer(Link over) : link(std::move(over)) {}
    KyPeer peer;
    AwakeClock::Time lastHeard{0};
    Link link;
    bool isSilent = false;  // calls to it fail; it is kept
    bool isSimple = false;  // knows whole messages only
  };
  // A call of one peer to another's module.
  struct Forward {
    std::string origin;  // route
    std::int64_t id = 0;
    std::string callee;  // route
    SteadyTime deadline;
  };

  void bind();
  void useKeys();
  bool listensBeyondLoopback() const;

  // All on the io thread.
  void handle(Received received);
  void handle(const std::string& route, Message message);
  void welcome(const std::string& route, const Message& hello);
  void handleCall(const std::string& route, Message call);
  Outcome answerOwnCall(const std::string& route, const Message& call);
  void takeOffers(const std::string& route, const KyValue& offers);
  Offers::Set allOffers() const;
  void registerFor(const std::string& route, const std::string& module);
  void forward(const std::string& route, const std::string& callee, Message call);
  void handleAnswer(const std::string& route, Message answer);
  void sendTo(const std::string& route, Parts parts);
  Link makeLink(const std::string& route, bool isSimple);
  bool transmit(const std::string& route, const Parts& parts);
  void noteGone();
  void sendTo(const std::string& route, Message message);
  void peerSilent(const std::string& route, const std::string& why);
  void peerGone(const std::string& route, const std::string& why);
  void breakCalls(const std::string& route, const std::string& why);
  bool isReachable(const std::string& route) const;
  void watchPeers();
  void dropExpiredForwards();

  Directory fDirectory;
  KyAddress fAddress;
  std::atomic<bool> fClosing{false};
  AwakeClock fClock;                            // io thread
  std::map<std::string, Peer> fPeers;           // by route; io thread
  std::map<std::string, std::string> fRoutes;   // of the peers, by id; io thread
  std::map<std::int64_t, Forward> fForwards;    // by our id; io thread
  Offers::Set fOffersSaid;                      // to every peer; io thread
  OutgoingStreams fStreams;                     // io thread
  std::set<std::string> fGone;                  // routes that lead nowhere any more; io thread
  std::optional<Authenticator> fAuthenticator;  // io thread, once it runs
  zmq::socket_t fSocket;                        // io thread, once it runs
};

}  // namespace Ky

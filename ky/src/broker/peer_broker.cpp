// SPDX-License-Identifier: Apache-2.0
#include "broker/peer_broker.h"

#include <algorithm>
#include <array>
#include <random>

namespace Ky {
namespace {

// One connection, so one route.
const std::string kParent;

// A bounded number in a row, so that everything else gets its turn under load.
constexpr int kMessagesAtOnce = 64;

// As long as a callee will wait; whatever comes of it, the module is not stuck then.
constexpr std::chrono::minutes kProbeDeadline{10};
constexpr std::chrono::minutes kLongestProbeInterval{1};

std::string randomId() {
  static constexpr char kHex[] = "0123456789abcdef";
  std::random_device random;
  std::string id;
  for (int word = 0; word < 4; ++word)
    for (auto bits = random(), digit = 0u; digit < 8; ++digit, bits >>= 4) id += kHex[bits & 0xF];
  return id;
}

std::string inSeconds(std::chrono::milliseconds time) {
  return KyValue(std::chrono::duration<double>(time).count()).toString() + " s";
}

}  // namespace

PeerBroker::PeerBroker(KyBrokerOptions options) : BrokerCore(std::move(options)), fId(randomId()) {
  if (fOptions.keys) loadKeys();
}

PeerBroker::~PeerBroker() {
  close();
}

void PeerBroker::loadKeys() {
  const KyKeyStore store(*fOptions.keys);
  fOwnKeys = store.own();
  fParentKey = store.known(address().toString());
  if (fParentKey.empty())
    throw KyError(fOptions.name, "",
                  "the key of the robot " + address().toString() + " is unknown: put it into " +
                      (store.folder() / "known").string() + " with 'ky keys trust'");
}

std::string PeerBroker::parentName() const {
  return fOptions.parent ? address().toString() : fOptions.parentInProcess;
}

KyAddress PeerBroker::address() const {
  return fOptions.parent.value_or(KyAddress{});
}

void PeerBroker::start() {
  post([this] { openSocket(); });
  startLoop();
  if (fOptions.connectLater) return;
  if (fState.waitForConnection(fOptions.patience.connect, [this] {
        return "the robot at " + parentName();
      }) == KyConnection::Connected)
    return;
  throw KyError(fOptions.name, "",
                "can't reach the robot at " + parentName() + ": " + fState.why());
}

std::unique_ptr<KyConnectionListener> PeerBroker::onConnection(
    std::function<void(KyConnection, const std::string&)> callback) {
  return fState.listen(std::move(callback));
}

void PeerBroker::announce(const std::string& module) {
  // Otherwise the next hello will.
  if (fState.get() != KyConnection::Connected) return;
  callElsewhere(kBrokerModule, "registerModule", {module}, fOptions.patience.call);
}

void PeerBroker::withdraw(const std::string& module) {
  if (fState.get() != KyConnection::Connected) return;
  try {
    callElsewhere(kBrokerModule, "unregisterModule", {module}, fOptions.patience.call);
  } catch (const KyError& error) {
    zu::log::debug("ky", "withdraw") << error.toString();  // lost meanwhile: withdrawn all the same
  }
}

bool PeerBroker::isPresentElsewhere(const std::string& module) {
  return callElsewhere(kBrokerModule, "isModulePresent", {module}, fOptions.patience.call).asBool();
}

std::vector<std::string> PeerBroker::namesElsewhere() {
  const KyValue list = callElsewhere(kBrokerModule, "getModuleList", {}, fOptions.patience.call);
  std::vector<std::string> names;
  for (const KyValue& name : list.asArray()) names.push_back(name.asString());
  return names;
}

KyValue PeerBroker::callElsewhere(const std::string& module, const std::string& method,
                                  KyValue::Array arguments, std::chrono::milliseconds deadline) {
  KyRead call{module, method, std::move(arguments)};
  if (auto ahead = CallsAhead::outcomeOf(*this, call)) return ahead->take();
  return await(send(module, method, std::move(call.arguments), deadline)).take();
}

KyStatistics PeerBroker::statistics() const {
  KyStatistics statistics = BrokerCore::statistics();
  statistics.unanswered = fUnanswered;
  statistics.mute = fMute.count();
  statistics.streams = fStreams.descriptions();
  return statistics;
}

SentCall PeerBroker::send(const std::string& module, const std::string& method,
                          KyValue::Array arguments, std::chrono::milliseconds deadline) {
  const KyConnection connection = fState.get();
  if (connection == KyConnection::Closed) throw KyError(module, method, "the broker is closed");
  if (connection != KyConnection::Connected) {
    ++fUnanswered;
    throw KyError(module, method,
                  "no connection to the robot at " + parentName() + ": " + fState.why());
  }
  requireNotMute(module, method);
  const std::int64_t id = nextId();
  Parts parts =
      encode(callMessage(id, module, method, std::move(arguments), deadline), fOptions.limits);
  SentCall call{
      id, module, method, std::chrono::steady_clock::now(), deadline, fPending.add(id, kParent)};
  if (!post([this, parts = std::move(parts)] {
        if (!fConnected)
          fPending.failAll(kParent, "the connection to the robot is lost");
        else if (!sendToParent(parts))
          zu::log::warning("ky", "send") << "dropped a call: the robot does not read";
      }))
    fPending.failAll(kParent, "the broker is closed");
  return call;
}

Outcome PeerBroker::await(const SentCall& call) {
  auto outcome = call.pending->wait(call.start + call.deadline,
                                    [this, &call] { return call.module + " at " + parentName(); });
  fPending.forget(call.id);
  if (!outcome || (outcome->failed && outcome->module.empty())) ++fUnanswered;
  if (!outcome) {
    // Who was given less time than usual may just not have been fast enough.
    if (call.deadline >= fOptions.patience.call) noteMute(call.module, call.start);
    return Outcome::failure(call.module, call.method,
                            "no answer within " + std::to_string(call.deadline.count()) + " ms");
  }
  // Errors of the connection name no place of their own.
  if (outcome->failed && outcome->module.empty())
    return Outcome::failure(call.module, call.method, outcome->text);
  return std::move(*outcome);
}

void PeerBroker::requireNotMute(const std::string& module, const std::string& method) {
  const auto since = fMute.since(module);
  if (!since) return;
  ++fUnanswered;
  const auto silence = std::chrono::steady_clock::now() - *since;
  throw KyError(
      module, method,
      "the module has not answered for " +
          std::to_string(std::chrono::duration_cast<std::chrono::seconds>(silence).count()) +
          " s; it is called again when it does");
}

// Every module answers "ping". That waits its turn behind the call that is stuck, and so comes back
// when the module is free again.
void PeerBroker::noteMute(const std::string& module, SteadyTime since) {
  if (module == kBrokerModule || !fMute.add(module, since)) return;
  zu::log::warning("ky", "call") << module << " does not answer";
  post([this, module] {
    if (!fConnected) return fMute.remove(module);
    fProbes[module].interval = fOptions.patience.call;
    probe(module);
  });
}

void PeerBroker::probe(const std::string& module) {
  Probe& probe = fProbes.at(module);
  const std::int64_t id = nextId();
  probe.calls.insert(id);
  probe.next = std::chrono::steady_clock::now() + probe.interval;
  probe.interval = std::min<std::chrono::milliseconds>(2 * probe.interval, kLongestProbeInterval);
  sendToParent(encode(callMessage(id, module, "ping", {}, kProbeDeadline), fOptions.limits));
}

void PeerBroker::probeAgain() {
  const auto now = std::chrono::steady_clock::now();
  std::vector<std::string> due;
  for (const auto& [module, probe] : fProbes)
    if (now >= probe.next) due.push_back(module);
  for (const std::string& module : due) probe(module);
}

// False when this is no answer to one.
bool PeerBroker::endProbe(std::int64_t call) {
  const auto found = std::find_if(fProbes.begin(), fProbes.end(), [&](const auto& entry) {
    return entry.second.calls.contains(call);
  });
  if (found == fProbes.end()) return false;
  zu::log::info("ky", "call") << found->first << " answers again";
  fMute.remove(found->first);
  fProbes.erase(found);
  return true;
}

void PeerBroker::sendAnswer(const std::string&, Parts parts) {
  post([this, parts = std::move(parts)] {
    if (fConnected) sendToParent(parts);
  });
}

bool PeerBroker::sendToParent(Parts parts) {
  return fLink->outbox().add(std::move(parts), std::chrono::steady_clock::now());
}

std::int64_t PeerBroker::openIncoming(const std::shared_ptr<IncomingStream>& stream) {
  const std::int64_t id = nextId();
  fStreams.add(id, stream);
  return id;
}

void PeerBroker::closeIncoming(std::int64_t id) {
  fStreams.remove(id);
  post([this, id] {
    if (fConnected) sendToParent(encode(closeMessage(id), fOptions.limits));
  });
}

// Also what nobody wants any more counts as a sign of life only.
void PeerBroker::handleItem(Message item) {
  const auto now = std::chrono::steady_clock::now();
  fStreams.receive(item.id(), {item.fields[1].asInt64(), std::move(item.fields[2]), now});
}

void PeerBroker::openSocket() {
  fReopenAt.reset();
  fMonitor.reset();
  if (fSocket) {
    fSocket.set(zmq::sockopt::linger, 0);
    fSocket.close();
  }
  fSocket = zmq::socket_t(context(), zmq::socket_type::dealer);
  fLink.emplace([this](const Parts& parts) { return send(fSocket, kParent, parts) == Sent::Yes; },
                fOptions.limits);
  setCommonOptions(fSocket);
  // Only to a live connection: nothing is kept for a robot that may come back some day.
  fSocket.set(zmq::sockopt::immediate, true);
  fSocket.set(zmq::sockopt::reconnect_ivl,
              static_cast<int>(fOptions.patience.reconnectMin.count()));
  fSocket.set(zmq::sockopt::reconnect_ivl_max,
              static_cast<int>(fOptions.patience.reconnectMax.count()));
  fSocket.set(zmq::sockopt::connect_timeout, 2000);
  setKeys();
  fLastHello = {};
  if (!fOptions.parent) {
    fSocket.connect("inproc://" + fOptions.parentInProcess);
    return;
  }
  fMonitor.emplace(context(), fSocket);
  KyAddress to = address();
  // ZeroMQ tries one address of a name only; robots on this machine listen on this one.
  if (to.host == "localhost") to.host = "127.0.0.1";
  fSocket.set(zmq::sockopt::ipv6, to.host.find(':') != std::string::npos);
  try {
    fSocket.connect("tcp://" + to.toString());
  } catch (const zmq::error_t& error) {
    fState.setProblem(error.what(), true);
  }
}

void PeerBroker::setKeys() {
  if (fParentKey.empty()) return;
  fSocket.set(zmq::sockopt::curve_serverkey, fParentKey);
  fSocket.set(zmq::sockopt::curve_publickey, fOwnKeys.publicKey);
  fSocket.set(zmq::sockopt::curve_secretkey, fOwnKeys.secretKey);
}

std::vector<zmq::pollitem_t> PeerBroker::waitFor() {
  if (!fSocket) return {};
  // Writable means that there is a connection to say hello on.
  const bool wantsHello = !fConnected && fLastHello == SteadyTime{};
  std::vector<zmq::pollitem_t> items = {
      {fSocket.handle(), 0, static_cast<short>(ZMQ_POLLIN | (wantsHello ? ZMQ_POLLOUT : 0)), 0}};
  if (fMonitor) items.push_back({fMonitor->socket().handle(), 0, ZMQ_POLLIN, 0});
  return items;
}

void PeerBroker::work() {
  if (!fSocket) return;
  fClock.tick();
  if (fReopenAt && std::chrono::steady_clock::now() >= *fReopenAt) openSocket();
  // Asked before reading: what the robot said before it hung up counts.
  const auto event = fMonitor ? fMonitor->next() : std::nullopt;
  for (int i = 0; i < kMessagesAtOnce; ++i) {
    auto received = receive(fSocket, false);
    if (!received) break;
    handle(std::move(*received));
  }
  if (event) handleEvent(*event);
  if (!fConnected) sayHello();
  for (const std::int64_t id : fStreams.endIdle())
    if (fConnected) sendToParent(encode(closeMessage(id), fOptions.limits));
  keepAlive();
}

void PeerBroker::sayHello() {
  const auto now = std::chrono::steady_clock::now();
  if (fLastHello != SteadyTime{} && now - fLastHello < fOptions.patience.heartbeat) return;
  fOffersSaid = fLocal.offers();
  const Parts hello =
      encode(helloMessage(fId, fOptions.name, fLocal.names(), offersToValue(fOffersSaid)),
             fOptions.limits);
  if (send(fSocket, kParent, hello) == Sent::Yes) fLastHello = now;
}

void PeerBroker::sayOffers() {
  Offers::Set offers = fLocal.offers();
  if (!fConnected || offers == fOffersSaid) return;
  fOffersSaid = std::move(offers);
  sendToParent(encode(offersMessage(offersToValue(fOffersSaid)), fOptions.limits));
}

void PeerBroker::handleEvent(ConnectionMonitor::Event event) {
  using Event = ConnectionMonitor::Event;
  if (fConnected) {
    if (event == Event::Closed) fallSilent(describe(event));
    return;
  }
  // The connection on which hello was said may be gone: say it again on the next.
  fLastHello = {};
  // ZeroMQ tries again by itself only while there is nobody; after a handshake that failed it is
  // done with this socket.
  if (event != Event::NobodyListens && event != Event::NameUnknown)
    fReopenAt = std::chrono::steady_clock::now() + fOptions.patience.reconnectMin;
  // Whoever hangs up before the welcome is as good as one who fails the handshake.
  fState.setProblem(describe(event == Event::Closed ? Event::HandshakeFailed : event), true);
}

void PeerBroker::handle(Received received) {
  fLastHeard = fClock.now();
  try {
    if (auto message = fLink->receive(received)) handle(std::move(*message));
  } catch (const UnreadableMessage& error) {
    reportDropped(error.what());
    if (error.call && fConnected) sendToParent(encode(unreadableAnswer(error), fOptions.limits));
  }
}

void PeerBroker::handle(Message message) {
  switch (message.kind) {
    case MessageKind::Welcome:
      return handleWelcome(message);
    case MessageKind::Call:
      return handleCall(std::move(message));
    case MessageKind::Result:
    case MessageKind::Error:
      return handleAnswer(std::move(message));
    case MessageKind::Pong:
      if (message.id() == fPingToken)
        setRoundTrip(std::chrono::duration_cast<std::chrono::microseconds>(
            std::chrono::steady_clock::now() - fLastPing));
      return;
    case MessageKind::Bye:
      return handleBye(message.fields[0].asString());
    case MessageKind::Received:
      fLink->outbox().acknowledged(static_cast<std::uint64_t>(message.id()),
                                   std::chrono::steady_clock::now());
      return;
    case MessageKind::Item:
      return handleItem(std::move(message));
    case MessageKind::End:
      return fStreams.end(message.id(), message.fields[1].asString());
    case MessageKind::Offers:
      fOffers.set(kParent, offersFromValue(message.fields[0]));
      return;
    default:
      return;  // nothing that a parent says
  }
}

void PeerBroker::handleWelcome(const Message& welcome) {
  if (welcome.fields[0].asInt64() != kProtocolVersion) return;
  const bool isKnown = welcome.fields[2].asBool();
  if (fState.get() == KyConnection::Silent && !isKnown) {
    // The socket stays: it is the one over which the welcome came.
    zu::log::warning("ky", "lose") << "lost the robot at " << parentName() << ": it was restarted";
    fStreams.endAll("the robot was restarted");
    fState.set(KyConnection::Lost, "it was restarted");
  }
  fOffers.set(kParent, offersFromValue(welcome.fields[3]));
  fConnected = true;
  fLastPing = std::chrono::steady_clock::now();
  fState.set(KyConnection::Connected, "");
}

void PeerBroker::handleBye(const std::string& reason) {
  const std::string why = "it said: " + reason;
  const KyConnection connection = fState.get();
  if (connection == KyConnection::Connected || connection == KyConnection::Silent)
    // Who takes his leave is missed by nobody; who doesn't know us any more has lost something.
    lose(why, reason == kSayHelloFirst ? zu::log::Level::warning : zu::log::Level::info);
  else
    fState.setProblem(why, true);
}

void PeerBroker::handleCall(Message call) {
  const std::int64_t id = call.id();
  const KyError unknown(call.fields[1].asString(), call.fields[2].asString(),
                        "the peer " + fOptions.name + " has no module of this name");
  if (!callForPeer({"", parentName()}, kParent, std::move(call)))
    sendToParent(encode(errorMessage(id, unknown), fOptions.limits));
}

void PeerBroker::handleAnswer(Message answer) {
  if (endProbe(answer.id())) return;
  if (answer.kind == MessageKind::Error) {
    const KyError error = errorOf(answer);
    fPending.settle(answer.id(), kParent,
                    Outcome::failure(error.module(), error.method(), error.what()));
  } else {
    fPending.settle(answer.id(), kParent, Outcome::success(std::move(answer.fields[1])));
  }
}

void PeerBroker::keepAlive() {
  const AwakeClock::Time silence = fClock.now() - fLastHeard;
  if (!fConnected) {
    if (fState.get() == KyConnection::Silent && silence > fOptions.patience.keep)
      lose("no sign of life for " + inSeconds(fOptions.patience.keep));
    return;
  }
  if (silence > fOptions.patience.silence)
    return fallSilent("no sign of life for " + inSeconds(fOptions.patience.silence));
  const auto now = std::chrono::steady_clock::now();
  if (now - fLastPing < fOptions.patience.heartbeat) return;
  fLastPing = now;
  sendToParent(encode(pingMessage(++fPingToken), fOptions.limits));
  probeAgain();
  fLink->outbox().pump(now);
}

void PeerBroker::fallSilent(const std::string& why) {
  fConnected = false;
  zu::log::warning("ky", "silent") << "the robot at " << parentName() << " is silent: " << why;
  startOver();
  fState.set(KyConnection::Silent, why);
  fPending.failAll(kParent, "the robot at " + parentName() + " is silent: " + why);
}

void PeerBroker::startOver() {
  fProbes.clear();
  fMute.clear();
  openSocket();
}

void PeerBroker::lose(const std::string& why, zu::log::Level level) {
  fConnected = false;
  zu::log::write(level, "ky", "lose", "lost the robot at " + parentName() + ": " + why);
  fId = randomId();
  fOffers.remove(kParent);
  fStreams.endAll("the robot is lost: " + why);
  startOver();
  fState.set(KyConnection::Lost, why);
  fPending.failAll(kParent, "lost the robot at " + parentName() + ": " + why);
}

void PeerBroker::closeSockets() {
  if (fConnected) send(fSocket, kParent, encode(byeMessage("bye"), fOptions.limits));
  fConnected = false;
  setClosed();
  fPending.failAll(kParent, "the broker is closed");
  fStreams.endAll("the broker is closed");
  fMonitor.reset();
  fSocket.close();
}

}  // namespace Ky

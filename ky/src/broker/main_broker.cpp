// SPDX-License-Identifier: Apache-2.0
#include "broker/main_broker.h"

#include <set>
#include <thread>
#include <utility>

#include "zu/log.h"

namespace Ky {
namespace {

// For peers to read the goodbye.
constexpr std::chrono::milliseconds kFarewell{50};
constexpr const char* kTooManyStreams = "too many streams are open; close one first";

}  // namespace

MainBroker::MainBroker(KyBrokerOptions options)
    : BrokerCore(std::move(options)), fSocket(context(), zmq::socket_type::router) {
  setCommonOptions(fSocket);
  fSocket.set(zmq::sockopt::router_mandatory, true);
  if (fOptions.listen && (fOptions.keys || listensBeyondLoopback())) useKeys();
  bind();
}

MainBroker::~MainBroker() {
  close();
}

bool MainBroker::listensBeyondLoopback() const {
  return fOptions.listen && !fOptions.listen->isLoopback();
}

void MainBroker::useKeys() {
  if (!fOptions.keys) {
    if (fOptions.insecure) return;
    throw KyError(fOptions.name, "",
                  "listening on " + fOptions.listen->host +
                      " lets others than this machine in: give keys (made by 'ky keys make'), or "
                      "say --insecure");
  }
  const KyKeyStore store(*fOptions.keys);
  const KyKeyPair own = store.own();
  fAuthenticator.emplace(context(), store);
  fSocket.set(zmq::sockopt::curve_server, true);
  fSocket.set(zmq::sockopt::curve_secretkey, own.secretKey);
}

void MainBroker::bind() {
  if (!fOptions.listen) {
    fSocket.bind("inproc://" + fOptions.listenInProcess);
    return;
  }
  fAddress = *fOptions.listen;
  if (fAddress.host == "localhost") fAddress.host = "127.0.0.1";
  fSocket.set(zmq::sockopt::ipv6, fAddress.host.find(':') != std::string::npos);
  const std::string port = fAddress.port == 0 ? "*" : std::to_string(fAddress.port);
  const std::string host =
      fAddress.host.find(':') == std::string::npos ? fAddress.host : "[" + fAddress.host + "]";
  try {
    fSocket.bind("tcp://" + host + ":" + port);
  } catch (const zmq::error_t& error) {
    if (error.num() == EADDRINUSE)
      throw KyError(fOptions.name, "",
                    "port " + port + " of " + fAddress.host +
                        " is taken: another robot may be running; stop it or choose another port");
    throw KyError(fOptions.name, "",
                  "can't listen on " + fAddress.toString() + ": " + error.what());
  }
  const std::string endpoint = fSocket.get(zmq::sockopt::last_endpoint);
  fAddress.port = std::stoi(endpoint.substr(endpoint.rfind(':') + 1));
}

KyConnection MainBroker::connection() const {
  return fClosing ? KyConnection::Closed : KyConnection::Connected;
}

std::unique_ptr<KyConnectionListener> MainBroker::onConnection(
    std::function<void(KyConnection, const std::string&)>) {
  return std::make_unique<KyConnectionListener>();  // nothing ever changes
}

std::shared_ptr<OutgoingStream> MainBroker::openOutgoing(const std::string& peer, std::int64_t id) {
  auto stream = std::make_shared<OutgoingStream>(peer, id, fOptions.limits);
  const bool isPosted = post([this, stream] {
    const auto route = fRoutes.find(stream->peer);
    if (route == fRoutes.end() || fPeers.at(route->second).isSimple)
      stream->isClosed = true;  // there is nobody whom an end would tell anything
    else if (!fStreams.add(stream))
      sendTo(route->second, endMessage(stream->id, kTooManyStreams));
  });
  if (!isPosted) stream->isClosed = true;
  return stream;
}

void MainBroker::streamWaits(const std::shared_ptr<OutgoingStream>& stream) {
  post([this, stream] {
    const auto route = fRoutes.find(stream->peer);
    if (stream->isClosed || route == fRoutes.end()) return;
    OutgoingStreams::queue(stream, fPeers.at(route->second).link.outbox());
    noteGone();
  });
}

void MainBroker::endOutgoing(const std::shared_ptr<OutgoingStream>& stream) {
  post([this, stream] {
    if (stream->isClosed.exchange(true)) return;
    fStreams.remove(stream);
    const auto route = fRoutes.find(stream->peer);
    if (route != fRoutes.end()) sendTo(route->second, endMessage(stream->id, "it was ended"));
  });
}

Link MainBroker::makeLink(const std::string& route, bool isSimple) {
  return {[this, route](const Parts& parts) { return transmit(route, parts); }, fOptions.limits,
          !isSimple};
}

bool MainBroker::isPresentElsewhere(const std::string& module) {
  return fDirectory.holder(module).has_value();
}

KyValue MainBroker::callElsewhere(const std::string& module, const std::string& method,
                                  KyValue::Array arguments, std::chrono::milliseconds deadline) {
  const auto callee = fDirectory.holder(module);
  if (!callee) throwUnknownModule(module, method);
  const std::int64_t id = nextId();
  Parts parts =
      encode(callMessage(id, module, method, std::move(arguments), deadline), fOptions.limits);
  const SteadyTime end = std::chrono::steady_clock::now() + deadline;
  const auto pending = fPending.add(id, *callee);
  if (!post([this, route = *callee, parts = std::move(parts)] {
        if (isReachable(route))
          sendTo(route, parts);
        else
          fPending.failAll(route, "the peer is silent or gone");
      }))
    fPending.failAll(*callee, "the broker is closed");
  auto outcome = pending->wait(end, [&module] { return module; });
  fPending.forget(id);
  if (!outcome)
    throw KyError(module, method, "no answer within " + std::to_string(deadline.count()) + " ms");
  return outcome->take();
}

void MainBroker::sendAnswer(const std::string& route, Parts parts) {
  post([this, route, parts = std::move(parts)] { sendTo(route, parts); });
}

std::vector<zmq::pollitem_t> MainBroker::waitFor() {
  std::vector<zmq::pollitem_t> items = {{fSocket.handle(), 0, ZMQ_POLLIN, 0}};
  if (fAuthenticator) items.push_back({fAuthenticator->socket().handle(), 0, ZMQ_POLLIN, 0});
  if (!fSocket) items.clear();
  return items;
}

void MainBroker::work() {
  if (!fSocket) return;
  fClock.tick();
  if (fAuthenticator) fAuthenticator->work();
  // A bounded number at a time, so that what is posted gets its turn under load.
  for (int i = 0; i < 64; ++i) {
    auto received = receive(fSocket, true);
    if (!received) break;
    handle(std::move(*received));
  }
  watchPeers();
  dropExpiredForwards();
}

void MainBroker::closeSockets() {
  setClosed();
  for (const auto& [route, peer] : fPeers)
    send(fSocket, route, encode(byeMessage("the robot stops"), fOptions.limits));
  for (const auto& [route, peer] : fPeers) fPending.failAll(route, "the broker is closed");
  // A peer's ZeroMQ drops what it has not read when the connection ends: a goodbye at the last
  // moment would be taken for a silence, which is borne for long.
  if (!fPeers.empty()) std::this_thread::sleep_for(kFarewell);
  fPeers.clear();
  fAuthenticator.reset();
  fSocket.close();
}

void MainBroker::handle(Received received) {
  try {
    const auto peer = fPeers.find(received.route);
    if (peer != fPeers.end()) peer->second.lastHeard = fClock.now();
    auto message = peer == fPeers.end() ? decode(received.text.data<char>(), received.text.size(),
                                                 received.attachments, fOptions.limits)
                                        : peer->second.link.receive(received);
    if (message) handle(received.route, std::move(*message));
  } catch (const UnreadableMessage& error) {
    reportDropped(error.what());
    if (error.call && fPeers.contains(received.route))
      sendTo(received.route, unreadableAnswer(error));
  }
}

void MainBroker::handle(const std::string& route, Message message) {
  if (message.kind == MessageKind::Hello) return welcome(route, message);
  const auto peer = fPeers.find(route);
  if (peer == fPeers.end()) {
    if (message.kind != MessageKind::Bye) sendTo(route, byeMessage(kSayHelloFirst));
    return;
  }
  if (std::exchange(peer->second.isSilent, false)) peer->second.link.outbox().rest(false);
  switch (message.kind) {
    case MessageKind::Call:
      return handleCall(route, std::move(message));
    case MessageKind::Result:
    case MessageKind::Error:
      return handleAnswer(route, std::move(message));
    case MessageKind::Ping:
      return sendTo(route, pongMessage(message.id()));
    case MessageKind::Bye:
      return peerGone(route, "it said goodbye");
    case MessageKind::Received:
      peer->second.link.outbox().acknowledged(static_cast<std::uint64_t>(message.id()),
                                              std::chrono::steady_clock::now());
      return fStreams.tell(peer->second.peer.id, peer->second.link.outbox().pace());
    case MessageKind::Close:
      return fStreams.close(peer->second.peer.id, message.id());
    case MessageKind::Offers:
      takeOffers(route, message.fields[0]);
      return sayOffers();
    default:
      return;  // nothing that a peer says to its parent
  }
}

void MainBroker::welcome(const std::string& route, const Message& hello) {
  const std::int64_t version = hello.fields[0].asInt64();
  const bool isSimple = version == kSimpleVersion;
  if (version != kProtocolVersion && !isSimple)
    return sendTo(route, byeMessage("this robot speaks version " +
                                    std::to_string(kProtocolVersion) + " of the protocol"));
  const std::string& id = hello.fields[1].asString();
  const std::string& name = hello.fields[2].asString();
  if (const auto there = fPeers.find(route); there != fPeers.end() && there->second.peer.id != id)
    peerGone(route, "it came as another");
  bool isKnown = fPeers.contains(route);
  bool isBack = false;
  for (auto known = fPeers.begin(); known != fPeers.end(); ++known) {
    if (known->second.peer.id != id || known->first == route) continue;
    // The same peer over a new connection: it keeps its modules and subscriptions.
    isKnown = isBack = true;
    const std::string before = known->first;
    fPeers.erase(known);
    breakCalls(before, "the connection to the peer was interrupted");
    fDirectory.rename(before, route);
    fOffers.rename(before, route);
    break;
  }
  Peer& peer = fPeers.try_emplace(route, makeLink(route, isSimple)).first->second;
  peer.peer = {id, name};
  peer.lastHeard = fClock.now();
  peer.isSilent = false;
  peer.isSimple = isSimple;
  fRoutes[id] = route;
  std::set<std::string> modules;
  for (const KyValue& module : hello.fields[3].asArray()) {
    try {
      registerFor(route, module.asString());
      modules.insert(module.asString());
    } catch (const KyError& error) {
      zu::log::warning("ky", "welcome") << error.toString();
    }
  }
  fDirectory.keepOnly(modules, route);
  takeOffers(route, hello.fields[4]);
  Message welcome = welcomeMessage(fOptions.name, isKnown, offersToValue(allOffers()));
  welcome.fields[0] = version;
  if (isSimple) welcome.fields.pop_back();
  transmit(route, encode(std::move(welcome), fOptions.limits));
  if (isBack) fStreams.goOn(id, peer.link.outbox());
  noteGone();
  sayOffers();
}

void MainBroker::takeOffers(const std::string& route, const KyValue& offers) {
  std::set<std::string> own;
  for (std::string& module : fDirectory.names())
    if (fDirectory.holder(module) == route) own.insert(std::move(module));
  fOffers.set(route, offersFromValue(offers, &own));
}

Offers::Set MainBroker::allOffers() const {
  Offers::Set all = fOffers.all();
  all.merge(fLocal.offers());
  if (fOptions.pipelining) all.insert(std::string(kBrokerModule) + "." + kPipelining);
  return all;
}

// To those who are there; who comes later is told with the welcome.
void MainBroker::sayOffers() {
  Offers::Set offers = allOffers();
  if (offers == fOffersSaid) return;
  fOffersSaid = std::move(offers);
  std::vector<std::string> routes;
  for (const auto& [route, peer] : fPeers)
    if (!peer.isSimple) routes.push_back(route);
  for (const std::string& route : routes) sendTo(route, offersMessage(offersToValue(fOffersSaid)));
}

void MainBroker::registerFor(const std::string& route, const std::string& module) {
  if (module.empty()) throw KyError(module, "", "a module must have a name");
  if (module == kBrokerModule || fLocal.contains(module))
    throw KyError(module, "", "the robot has a module of this name of its own");
  fDirectory.add(module, route);
}

void MainBroker::handleCall(const std::string& route, Message call) {
  const std::string module = call.fields[1].asString();
  const std::int64_t id = call.id();
  if (module == kBrokerModule) return sendTo(route, encodeAnswer(id, answerOwnCall(route, call)));
  if (fLocal.contains(module) && callForPeer(fPeers.at(route).peer, route, call)) return;
  const auto callee = fDirectory.holder(module);
  if (callee) return forward(route, *callee, std::move(call));
  sendTo(route, errorMessage(id, KyError(module, call.fields[2].asString(),
                                         "the robot has no module of this name")));
}

Outcome MainBroker::answerOwnCall(const std::string& route, const Message& call) {
  const std::string& method = call.fields[2].asString();
  const KyValue& arguments = call.fields[3];
  try {
    if (method == "isModulePresent") {
      const std::string& name = arguments[0].asString();
      return Outcome::success(fLocal.contains(name) || isPresentElsewhere(name));
    }
    if (method == "getModuleList") {
      KyValue names = KyValue::array();
      for (std::string& name : fLocal.names()) names.push(std::move(name));
      for (std::string& name : fDirectory.names()) names.push(std::move(name));
      return Outcome::success(std::move(names));
    }
    if (method == "registerModule") {
      registerFor(route, arguments[0].asString());
      return Outcome::success({});
    }
    if (method == "unregisterModule") {
      fDirectory.remove(arguments[0].asString(), route);
      return Outcome::success({});
    }
  } catch (const KyError& error) {
    return Outcome::failure(kBrokerModule, method, error.what());
  }
  return Outcome::failure(kBrokerModule, method, "there is no such method");
}

void MainBroker::forward(const std::string& route, const std::string& callee, Message call) {
  if (!isReachable(callee))
    return sendTo(
        route, errorMessage(call.id(), KyError(call.fields[1].asString(), call.fields[2].asString(),
                                               "the peer that has it is silent")));
  const std::int64_t id = nextId();
  fForwards[id] = {route, call.id(), callee, deadlineOf(call)};
  call.fields[0] = id;
  sendTo(callee, std::move(call));
}

void MainBroker::handleAnswer(const std::string& route, Message answer) {
  const std::int64_t id = answer.id();
  const auto found = fForwards.find(id);
  if (found != fForwards.end()) {
    if (found->second.callee != route) return;
    const Forward forward = found->second;
    fForwards.erase(found);
    answer.fields[0] = forward.id;
    return sendTo(forward.origin, std::move(answer));
  }
  if (answer.kind == MessageKind::Error) {
    const KyError error = errorOf(answer);
    fPending.settle(id, route, Outcome::failure(error.module(), error.method(), error.what()));
  } else {
    fPending.settle(id, route, Outcome::success(std::move(answer.fields[1])));
  }
}

void MainBroker::sendTo(const std::string& route, Message message) {
  sendTo(route, encode(std::move(message), fOptions.limits));
}

void MainBroker::sendTo(const std::string& route, Parts parts) {
  const auto peer = fPeers.find(route);
  const bool isTaken =
      peer == fPeers.end()
          ? transmit(route, parts)
          : peer->second.link.outbox().add(std::move(parts), std::chrono::steady_clock::now());
  if (!isTaken) zu::log::warning("ky", "send") << "dropped a message to a peer that does not read";
  noteGone();
}

// False when the socket is full. Who is gone is noted for noteGone(): whoever sends may be in the
// middle of something with that peer.
bool MainBroker::transmit(const std::string& route, const Parts& parts) {
  if (!fSocket) return true;
  const Sent sent = send(fSocket, route, parts);
  if (sent == Sent::PeerGone) fGone.insert(route);
  return sent != Sent::QueueFull;
}

void MainBroker::noteGone() {
  while (!fGone.empty())
    peerSilent(fGone.extract(fGone.begin()).value(), "its connection was closed");
}

bool MainBroker::isReachable(const std::string& route) const {
  const auto found = fPeers.find(route);
  return found != fPeers.end() && !found->second.isSilent;
}

void MainBroker::peerSilent(const std::string& route, const std::string& why) {
  const auto found = fPeers.find(route);
  if (found == fPeers.end() || std::exchange(found->second.isSilent, true)) return;
  // Who is not heard may hear all the same: without what is sent it notices, and connects again.
  found->second.link.outbox().rest(true);
  const std::string name = found->second.peer.name;
  zu::log::info("ky", "peerSilent") << name << " is silent: " << why;
  breakCalls(route, "the peer " + name + " is silent: " + why);
}

void MainBroker::peerGone(const std::string& route, const std::string& why) {
  const auto found = fPeers.find(route);
  if (found == fPeers.end()) return;
  const KyPeer peer = found->second.peer;
  fPeers.erase(found);
  fRoutes.erase(peer.id);
  fStreams.closeAll(peer.id);
  zu::log::info("ky", "peerGone") << peer.name << " left: " << why;
  fDirectory.removeAll(route);
  fOffers.remove(route);
  sayOffers();
  breakCalls(route, "the peer " + peer.name + " is gone: " + why);
  fLocal.peerLeft(peer);
}

// Calls to the peer end with an error; the answers to its own have nowhere to go.
void MainBroker::breakCalls(const std::string& route, const std::string& why) {
  fPending.failAll(route, why);
  std::vector<Forward> broken;
  std::erase_if(fForwards, [&](const auto& entry) {
    const bool isBroken = entry.second.callee == route;
    if (isBroken) broken.push_back(entry.second);
    return isBroken || entry.second.origin == route;
  });
  for (const Forward& forward : broken)
    sendTo(forward.origin, errorMessage(forward.id, KyError(why)));
}

void MainBroker::watchPeers() {
  std::vector<std::string> silent, gone;
  for (const auto& [route, peer] : fPeers) {
    const AwakeClock::Time silence = fClock.now() - peer.lastHeard;
    if (silence > fOptions.patience.keep)
      gone.push_back(route);
    else if (silence > fOptions.patience.silence && !peer.isSilent)
      silent.push_back(route);
  }
  for (auto& [route, peer] : fPeers) peer.link.outbox().pump(std::chrono::steady_clock::now());
  noteGone();
  for (const std::string& route : silent) peerSilent(route, "no sign of life");
  for (const std::string& route : gone) peerGone(route, "no sign of life");
}

void MainBroker::dropExpiredForwards() {
  const auto now = std::chrono::steady_clock::now();
  std::erase_if(fForwards, [&](const auto& entry) { return entry.second.deadline < now; });
}

}  // namespace Ky

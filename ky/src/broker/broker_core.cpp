// SPDX-License-Identifier: Apache-2.0
#include "broker/broker_core.h"

#include <algorithm>

#include "zu/log.h"

namespace Ky {
namespace {

constexpr std::chrono::minutes kLongestDeadline{10};
// Messages that wait for a slow peer; then it is no use to queue more.
constexpr int kQueuedMessages = 256;
constexpr std::chrono::milliseconds kHandshake{1500};
// How long a closing socket may try to get its last words out.
constexpr std::chrono::milliseconds kLinger{200};

}  // namespace

KyInProcess::KyInProcess() : fImpl(std::make_unique<Impl>()) {
}
KyInProcess::~KyInProcess() = default;

BrokerCore::BrokerCore(KyBrokerOptions options) : fOptions(std::move(options)) {
}

BrokerCore::~BrokerCore() = default;

zmq::context_t& BrokerCore::context() {
  return fOptions.inProcess ? fOptions.inProcess->fImpl->context : fOwnContext;
}

void BrokerCore::setCommonOptions(zmq::socket_t& socket) const {
  socket.set(zmq::sockopt::sndhwm, kQueuedMessages);
  socket.set(zmq::sockopt::rcvhwm, kQueuedMessages);
  socket.set(zmq::sockopt::maxmsgsize, static_cast<std::int64_t>(fOptions.limits.messageBytes));
  socket.set(zmq::sockopt::handshake_ivl, static_cast<int>(kHandshake.count()));
  socket.set(zmq::sockopt::linger, static_cast<int>(kLinger.count()));
}

KyStatistics BrokerCore::statistics() const {
  return {fBytesIn, fBytesOut, std::chrono::microseconds(fRoundTrip.load()), 0, 0, {}};
}

bool BrokerCore::offers(const std::string& offer) const {
  return fOffers.contains(offer) || fLocal.offers().contains(offer);
}

void BrokerCore::offersChanged() {
  fLoop.post([this] { sayOffers(); });
}

Sent BrokerCore::send(zmq::socket_t& socket, const std::string& route, const Parts& parts) {
  const Sent sent = sendParts(socket, route, parts);
  if (sent == Sent::Yes) fBytesOut += parts.bytes();
  return sent;
}

std::optional<Received> BrokerCore::receive(zmq::socket_t& socket, bool hasRoute) {
  auto received = receiveParts(socket, hasRoute);
  if (received) fBytesIn += received->bytes;
  return received;
}

void BrokerCore::reportDropped(const std::string& why) {
  constexpr std::uint64_t kInFull = 20;
  constexpr std::uint64_t kThenEvery = 1000;
  ++fDropped;
  if (fDropped <= kInFull)
    zu::log::warning("ky", "receive") << "dropped a message: " << why;
  else if (fDropped % kThenEvery == 0)
    zu::log::warning("ky", "receive") << "dropped " << fDropped << " messages so far: " << why;
}

KyValue BrokerCore::call(const std::string& module, const std::string& method,
                         KyValue::Array arguments, std::chrono::milliseconds deadline) {
  if (!fLocal.contains(module))
    return callElsewhere(module, method, std::move(arguments), deadline);
  const SteadyTime end = std::chrono::steady_clock::now() + deadline;
  const auto pending = std::make_shared<PendingCall>();
  const bool found =
      fLocal.call({{"", fOptions.name}, module, method, std::move(arguments), end},
                  [pending](Outcome outcome) { pending->settle(std::move(outcome)); });
  if (!found) throwUnknownModule(module, method);
  auto outcome = pending->wait(end, [&module] { return module; });
  if (!outcome)
    throw KyError(module, method, "no answer within " + std::to_string(deadline.count()) + " ms");
  return outcome->take();
}

bool BrokerCore::callForPeer(const KyPeer& caller, const std::string& route, Message message) {
  const std::int64_t id = message.id();
  LocalCall call{caller, message.fields[1].asString(), message.fields[2].asString(),
                 message.fields[3].asArray(), deadlineOf(message)};
  return fLocal.call(std::move(call), [this, id, route](Outcome outcome) {
    sendAnswer(route, encodeAnswer(id, std::move(outcome)));
  });
}

Parts BrokerCore::encodeAnswer(std::int64_t id, Outcome outcome) const {
  try {
    return encode(outcome.failed ? errorMessage(id, outcome.error())
                                 : resultMessage(id, std::move(outcome.value)),
                  fOptions.limits);
  } catch (const KyError& error) {
    return encode(
        errorMessage(id, KyError(outcome.module, outcome.method,
                                 std::string("the answer can't be sent: ") + error.what())),
        fOptions.limits);
  }
}

std::shared_ptr<OutgoingStream> BrokerCore::openOutgoing(const std::string&, std::int64_t) {
  throw KyError(fOptions.name, "sendStream", "only a robot's own modules send streams");
}

std::int64_t BrokerCore::openIncoming(const std::shared_ptr<IncomingStream>&) {
  throw KyError(fOptions.name, "receiveStream", "a robot receives no streams; its peers do");
}

void BrokerCore::disconnect() {
  setClosed();
  fLoop.post([this] { closeSockets(); });
}

void BrokerCore::close() {
  const zu::MutexLock guard(fCloseMutex);
  if (fClosed) return;
  fClosed = true;
  fLoop.post([this] { closeSockets(); });
  fLoop.stop();
  // Returns when the sockets are really gone: whoever wants the port next finds it free.
  if (!fOptions.inProcess) fOwnContext.close();
}

SteadyTime deadlineOf(const Message& call) {
  const std::chrono::milliseconds asked(std::max<std::int64_t>(0, call.fields[4].asInt64()));
  return std::chrono::steady_clock::now() +
         std::min<std::chrono::milliseconds>(asked, kLongestDeadline);
}

void throwUnknownModule(const std::string& module, const std::string& method) {
  throw KyError(module, method, "the robot has no module of this name");
}

}  // namespace Ky

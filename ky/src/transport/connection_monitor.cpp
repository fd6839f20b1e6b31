// SPDX-License-Identifier: Apache-2.0
#include "transport/connection_monitor.h"

#include <arpa/inet.h>

#include <cstdint>
#include <cstring>

namespace Ky {
namespace {

constexpr int kEvents = ZMQ_EVENT_CONNECTED | ZMQ_EVENT_DISCONNECTED | ZMQ_EVENT_CONNECT_RETRIED |
                        ZMQ_EVENT_CONNECT_DELAYED | ZMQ_EVENT_CLOSED |
                        ZMQ_EVENT_HANDSHAKE_FAILED_AUTH | ZMQ_EVENT_HANDSHAKE_FAILED_PROTOCOL |
                        ZMQ_EVENT_HANDSHAKE_FAILED_NO_DETAIL;

// Of "tcp://HOST:PORT".
bool namesAHost(const std::string& endpoint) {
  const std::string protocol = "tcp://";
  if (!endpoint.starts_with(protocol)) return false;
  const std::string host = endpoint.substr(protocol.size(), endpoint.rfind(':') - protocol.size());
  in_addr address{};
  return !host.starts_with('[') && inet_pton(AF_INET, host.c_str(), &address) != 1;
}

}  // namespace

ConnectionMonitor::ConnectionMonitor(zmq::context_t& context, zmq::socket_t& socket)
    : fWatched(socket),
      fEvents(context, zmq::socket_type::pair),
      fHasKeys(socket.get(zmq::sockopt::mechanism) == ZMQ_CURVE) {
  // Named after the socket, of which there is one at this place at a time.
  const std::string name =
      "inproc://monitor-" + std::to_string(reinterpret_cast<std::uintptr_t>(socket.handle()));
  if (zmq_socket_monitor(socket.handle(), name.c_str(), kEvents) != 0) throw zmq::error_t();
  fEvents.set(zmq::sockopt::linger, 0);
  fEvents.connect(name);
}

ConnectionMonitor::~ConnectionMonitor() {
  zmq_socket_monitor(fWatched.handle(), nullptr, 0);
}

std::optional<ConnectionMonitor::Event> ConnectionMonitor::next() {
  while (true) {
    zmq::message_t event;
    if (!fEvents.recv(event, zmq::recv_flags::dontwait)) return std::nullopt;
    zmq::message_t address;
    if (event.more()) {
      [[maybe_unused]] const auto received = fEvents.recv(address, zmq::recv_flags::dontwait);
    }
    if (event.size() < sizeof(std::uint16_t)) continue;
    std::uint16_t number = 0;
    std::memcpy(&number, event.data(), sizeof number);
    if (const auto told = tell(number, address.to_string())) return told;
  }
}

// One failed attempt brings several events, of which only the first tells why. ZeroMQ, which looks
// names up on a thread of its own, makes a socket only when it has found an address: an attempt
// that ends before there was one has found none.
std::optional<ConnectionMonitor::Event> ConnectionMonitor::tell(std::uint16_t event,
                                                                const std::string& endpoint) {
  if (event == ZMQ_EVENT_CONNECT_DELAYED || event == ZMQ_EVENT_CLOSED) {
    fHasSocket = true;
    return std::nullopt;
  }
  const bool hadSocket = fHasSocket;
  fHasSocket = false;
  const bool isExplained = fExplained;
  fExplained = true;
  switch (event) {
    case ZMQ_EVENT_CONNECTED:
      fExplained = false;
      return std::nullopt;
    case ZMQ_EVENT_CONNECT_RETRIED:
      fExplained = false;
      if (isExplained) return std::nullopt;
      return hadSocket || !namesAHost(endpoint) ? Event::NobodyListens : Event::NameUnknown;
    case ZMQ_EVENT_HANDSHAKE_FAILED_AUTH:
      return Event::KeyRefused;
    case ZMQ_EVENT_DISCONNECTED:
      return isExplained ? std::nullopt : std::optional(Event::Closed);
    default:
      // The other side may hang up before it has said what it speaks, so more can't be known.
      return fHasKeys ? Event::KeysUnwanted : Event::KeysWanted;
  }
}

const char* describe(ConnectionMonitor::Event event) {
  switch (event) {
    case ConnectionMonitor::Event::Closed:
      return "the connection was closed";
    case ConnectionMonitor::Event::NameUnknown:
      return "no computer of this name is found: check the name, or give the IP address";
    case ConnectionMonitor::Event::NobodyListens:
      return "nobody listens there";
    case ConnectionMonitor::Event::KeyRefused:
      return "it does not know this machine's key: make it known there with 'ky keys trust'";
    case ConnectionMonitor::Event::KeysWanted:
      return "it is no robot, or one that wants keys: make them with 'ky keys make', and connect "
             "with encryption";
    case ConnectionMonitor::Event::KeysUnwanted:
      return "it is no robot, or one without keys: if it was started with --insecure, connect "
             "without encryption ('ky --insecure', or the box in Lookout's dialog)";
    case ConnectionMonitor::Event::HandshakeFailed:
      return "it is no robot, or one that wants keys or none";
  }
  return "";
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// Hears from ZeroMQ what becomes of a socket's connection.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <zmq.hpp>

namespace Ky {

// Thread-bound. Tells nothing about in-process connections: they have no events.
class ConnectionMonitor {
 public:
  // The socket has its keys already, if it gets any.
  ConnectionMonitor(zmq::context_t& context, zmq::socket_t& socket);
  ~ConnectionMonitor();
  ConnectionMonitor(const ConnectionMonitor&) = delete;
  ConnectionMonitor& operator=(const ConnectionMonitor&) = delete;

  enum class Event {
    Closed,
    NameUnknown,
    NobodyListens,
    KeyRefused,
    KeysWanted,    // or it is no robot; the same below
    KeysUnwanted,  // we have keys, it has none
    HandshakeFailed,
  };

  zmq::socket_t& socket() { return fEvents; }
  // The next event that matters, or nothing.
  std::optional<Event> next();

 private:
  std::optional<Event> tell(std::uint16_t event, const std::string& endpoint);

  zmq::socket_t& fWatched;
  zmq::socket_t fEvents;
  const bool fHasKeys;
  // Of the attempt under way:
  bool fHasSocket = false;
  bool fExplained = false;  // why it failed has been told
};

// For people.
const char* describe(ConnectionMonitor::Event event);

}  // namespace Ky

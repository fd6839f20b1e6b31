// SPDX-License-Identifier: Apache-2.0
// Whole messages over ZeroMQ sockets, without copying their attachments.
#pragma once

#include <optional>
#include <string>
#include <vector>
#include <zmq.hpp>

#include "wire/packing.h"

namespace Ky {

// What arrived: the peer's routing id (on a router only), the packed text, the attachments.
struct Received {
  std::string route;
  zmq::message_t text;
  std::vector<KyBinary> attachments;
  std::size_t bytes = 0;
};

enum class Sent { Yes, PeerGone, QueueFull };

// Never blocks. `route` is empty on a dealer.
Sent sendParts(zmq::socket_t& socket, const std::string& route, const Parts& parts);

// Nothing when no message is waiting. Messages with more than kMaxParts parts come without their
// text and are to be dropped.
constexpr std::size_t kMaxParts = 256;
std::optional<Received> receiveParts(zmq::socket_t& socket, bool hasRoute);

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "transport/socket_io.h"

#include <atomic>
#include <memory>
#include <utility>

namespace Ky {
namespace {

// Counts what goes to and fro between this code and ZeroMQ's threads: thread checkers, which can't
// look into ZeroMQ, see by it that what one thread wrote before is there for the next.
std::atomic<unsigned> handOvers{0};

void release(void*, void* hint) {
  ++handOvers;
  delete static_cast<KyBinary*>(hint);
}

// A message that refers to the binary's bytes; ZeroMQ gives the reference back when they are sent.
zmq::message_t referTo(const KyBinary& binary) {
  auto* keeper = new KyBinary(binary);
  // The interface wants a non-const pointer, but sending only reads.
  auto* bytes = const_cast<std::uint8_t*>(binary.data());
  ++handOvers;
  return zmq::message_t(bytes, binary.size(), release, keeper);
}

KyBinary takeOver(zmq::message_t message) {
  ++handOvers;
  auto owner = std::make_shared<zmq::message_t>(std::move(message));
  const auto* bytes = owner->data<std::uint8_t>();
  const std::size_t size = owner->size();
  return KyBinary(std::move(owner), bytes, size);
}

}  // namespace

Sent sendParts(zmq::socket_t& socket, const std::string& route, const Parts& parts) {
  constexpr auto kMore = zmq::send_flags::dontwait | zmq::send_flags::sndmore;
  try {
    // Once a socket has taken the first part of a message, it takes the others too.
    if (!route.empty() && !socket.send(zmq::buffer(route), kMore)) return Sent::QueueFull;
    const auto last = parts.attachments.size();
    if (!socket.send(zmq::buffer(parts.text), last > 0 ? kMore : zmq::send_flags::dontwait))
      return Sent::QueueFull;
    for (std::size_t i = 0; i < last; ++i)
      socket.send(referTo(parts.attachments[i]), i + 1 < last ? kMore : zmq::send_flags::dontwait);
    return Sent::Yes;
  } catch (const zmq::error_t& error) {
    if (error.num() == EHOSTUNREACH) return Sent::PeerGone;
    throw;
  }
}

std::optional<Received> receiveParts(zmq::socket_t& socket, bool hasRoute) {
  Received received;
  std::size_t parts = 0;
  for (bool more = true; more; ++parts) {
    zmq::message_t part;
    if (!socket.recv(part, zmq::recv_flags::dontwait)) return std::nullopt;
    more = part.more();
    received.bytes += part.size();
    const std::size_t index = hasRoute ? parts : parts + 1;
    if (index == 0)
      received.route = part.to_string();
    else if (index == 1)
      received.text = std::move(part);
    else if (parts < kMaxParts)
      received.attachments.push_back(takeOver(std::move(part)));
  }
  if (parts > kMaxParts) received.text.rebuild();
  return received;
}

}  // namespace Ky

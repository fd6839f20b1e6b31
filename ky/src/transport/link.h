// SPDX-License-Identifier: Apache-2.0
// One connection, seen from one end: messages in and out, whatever their size.
#pragma once

#include <cstdint>
#include <optional>

#include "transport/outbox.h"
#include "transport/socket_io.h"
#include "wire/message.h"
#include "wire/pieces.h"

namespace Ky {

// Thread-bound. Lives as long as the connection: both ends count from its beginning.
class Link {
 public:
  using Time = Outbox::Time;

  // `isPaced`: whether the other end acknowledges, and wants to be told, what it gets.
  Link(Outbox::Send send, const KyLimits& limits, bool isPaced = true);

  Outbox& outbox() { return fOutbox; }
  const Outbox& outbox() const { return fOutbox; }

  // A message that came in; nothing for the piece of one. Acknowledges pieces. Throws
  // UnreadableMessage.
  std::optional<Message> receive(const Received& received);

 private:
  const KyLimits fLimits;
  const Outbox::Send fSend;
  const bool fIsPaced;
  Outbox fOutbox;
  Joiner fJoiner;
};

}  // namespace Ky

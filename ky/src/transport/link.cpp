// SPDX-License-Identifier: Apache-2.0
#include "transport/link.h"

#include <utility>

namespace Ky {

Link::Link(Outbox::Send send, const KyLimits& limits, bool isPaced)
    : fLimits(limits),
      fSend(std::move(send)),
      fIsPaced(isPaced),
      fOutbox(fSend, isPaced),
      fJoiner(limits) {
}

std::optional<Message> Link::receive(const Received& received) {
  Message message =
      decode(received.text.data<char>(), received.text.size(), received.attachments, fLimits);
  if (message.kind != MessageKind::Piece) return message;
  // What can't be used was sent all the same.
  if (fIsPaced) fSend(encode(receivedMessage(message.id()), fLimits));
  std::optional<Joined> joined;
  try {
    joined = fJoiner.add(message, received.attachments);
  } catch (const KyError& error) {
    throw UnreadableMessage(error.what(), std::nullopt);
  }
  if (!joined) return std::nullopt;
  message = decode(reinterpret_cast<const char*>(joined->text.data()), joined->text.size(),
                   joined->attachments, fLimits);
  if (message.kind == MessageKind::Piece)
    throw UnreadableMessage("a piece made of pieces", std::nullopt);
  return message;
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// Whatever comes in over a connection, pieces and messages of streams become messages in order or a
// refusal, never a crash. The bytes choose what is sent; see send().
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <map>
#include <string>

#include "broker/streams.h"
#include "transport/link.h"
#include "value_from_bytes.h"

namespace {

using namespace Ky;

constexpr std::size_t kDepth = 4;
constexpr std::size_t kMostMessages = 64;
constexpr const char* kPeer = "peer";

KyLimits smallLimits() {
  KyLimits limits;
  limits.messageBytes = 1u << 16;
  limits.packedBytes = 1u << 15;
  limits.values = 1000;
  return limits;
}

KyBinary bytesOf(std::string text) {
  return KyBinary::copyOf(text.data(), text.size());
}

// One end of a connection with two streams each way.
class End {
 public:
  End() {
    for (const std::int64_t id : {0, 1}) {
      fReceived[id] = std::make_shared<IncomingStream>(kDepth, std::nullopt);
      fIncoming.add(id, fReceived[id]);
      fOutgoing.add(std::make_shared<OutgoingStream>(kPeer, id, fLimits));
    }
  }

  void receive(const Parts& parts) {
    Received received;
    received.text = zmq::message_t(parts.text.data(), parts.text.size());
    received.attachments = parts.attachments;
    received.bytes = parts.bytes();
    try {
      if (auto message = fLink.receive(received)) handle(std::move(*message));
    } catch (const UnreadableMessage&) {
    }
    check();
  }

  std::uint64_t sent = 0;  // to it, in pieces

 private:
  void handle(Message message) {
    switch (message.kind) {
      case MessageKind::Piece:
        std::abort();
      case MessageKind::Received:
        fLink.outbox().acknowledged(static_cast<std::uint64_t>(message.id()), {});
        return fOutgoing.tell(kPeer, fLink.outbox().pace());
      case MessageKind::Item:
        fIncoming.receive(message.id(), {message.fields[1].asInt64(), message.fields[2], {}});
        return;
      case MessageKind::End:
        return fIncoming.end(message.id(), message.fields[1].asString());
      case MessageKind::Close:
        return fOutgoing.close(kPeer, message.id());
      default:
        return;
    }
  }
  void check() {
    for (const auto& [id, stream] : fReceived) {
      const zu::MutexLock guard(stream->mutex);
      if (stream->items.size() > kDepth) std::abort();
      for (std::size_t i = 1; i < stream->items.size(); ++i)
        if (stream->items[i - 1].number >= stream->items[i].number) std::abort();
    }
  }

  const KyLimits fLimits = smallLimits();
  Link fLink{[](const Parts&) { return true; }, fLimits};
  std::map<std::int64_t, std::shared_ptr<IncomingStream>> fReceived;
  IncomingStreams fIncoming;
  OutgoingStreams fOutgoing;
};

std::int64_t number(ValueFromBytes& bytes) {
  const KyValue value = bytes.value();
  return value.isInt() ? value.asInt64() : bytes.byte() % 4;
}

// A message, as it should be, in pieces of some size; now and then one is missing.
void sendInPieces(ValueFromBytes& bytes, Parts whole, End& end) {
  Cutter cutter(std::move(whole));
  const std::size_t size = 1 + bytes.byte();
  const std::uint8_t missing = bytes.byte();
  for (std::uint8_t i = 0; cutter.left() > 0 && i < 200; ++i) {
    const Parts piece = cutter.piece(size, end.sent);
    end.sent += bytesOf(piece.attachments);
    if (i != missing) end.receive(piece);
    cutter.sent(piece);
  }
}

// A piece with any sizes and any slices.
Parts anyPiece(ValueFromBytes& bytes) {
  KyValue::Array sizes;
  for (int i = bytes.byte() % 4; i > 0; --i) sizes.emplace_back(number(bytes));
  const auto position = static_cast<std::uint64_t>(number(bytes));
  Parts piece = encode(pieceMessage(position, std::move(sizes)), {});
  for (int i = bytes.byte() % 4; i > 0; --i)
    piece.attachments.push_back(bytesOf(std::string(number(bytes) & 0xfff, 'x')));
  return piece;
}

Message anyMessage(ValueFromBytes& bytes) {
  const std::int64_t stream = number(bytes);
  switch (bytes.byte() % 4) {
    case 0:
      return {MessageKind::Received, {stream}};
    case 1:
      return endMessage(stream, "why");
    case 2:
      return closeMessage(stream);
    default:
      return itemMessage(stream, number(bytes), bytes.value());
  }
}

void send(ValueFromBytes& bytes, End& end) {
  const std::uint8_t what = bytes.byte() % 4;
  if (what == 0) return end.receive(anyPiece(bytes));
  Parts message = encode(anyMessage(bytes), {});
  if (what == 1) return sendInPieces(bytes, std::move(message), end);
  if (what == 2 && !message.text.empty())
    message.text[bytes.byte() % message.text.size()] = static_cast<char>(bytes.byte());
  end.receive(message);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ValueFromBytes bytes(data, size);
  End end;
  for (std::size_t i = 0; i < kMostMessages && !bytes.isEmpty(); ++i) send(bytes, end);
  return 0;
}

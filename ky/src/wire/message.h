// SPDX-License-Identifier: Apache-2.0
// What two brokers say to each other. docs/protocol.md is the wire format in full.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "ky/error.h"
#include "ky/value.h"
#include "wire/packing.h"

namespace Ky {

constexpr int kProtocolVersion = 2;
// Of peers that know whole messages only: no pieces, streams or offers.
constexpr int kSimpleVersion = 1;

// The name under which every main broker answers calls itself.
constexpr const char* kBrokerModule = "KyBroker";
// What it may offer.
constexpr const char* kPipelining = "pipelining";

enum class MessageKind {
  Hello = 1,      // version, peer id, broker name, [module names], [offers]
  Welcome = 2,    // version, broker name, whether what belonged to this peer id is still there,
                  // [offers]
  Call = 3,       // id, module, method, [arguments], milliseconds until the caller gives up
  Result = 4,     // id, value
  Error = 5,      // id, module, method, text
  Ping = 6,       // token
  Pong = 7,       // token
  Bye = 8,        // why
  Offers = 9,     // [offers]: those before count no more
  Piece = 10,     // bytes of all pieces so far with this; [bytes of each part] in the first piece
                  // of a message, [] in the others
  Received = 11,  // the first field of the newest piece that has come
  Item = 12,      // stream, number, value
  End = 13,       // stream, why: no more items come
  Close = 14,     // stream: no more items are wanted
};

// `fields` are those listed at the kind, already checked for their number and types.
struct Message {
  MessageKind kind;
  KyValue::Array fields;

  std::int64_t id() const { return fields[0].asInt64(); }
};

// A message beyond the limits, or that is none.
struct UnreadableMessage : KyError {
  UnreadableMessage(const std::string& text, std::optional<std::int64_t> id)
      : KyError(text), call(id) {}

  // Of the call that it was to be, so that its caller need not wait: where that much can be read.
  std::optional<std::int64_t> call;
};

Message helloMessage(const std::string& peer, const std::string& name,
                     const std::vector<std::string>& modules, KyValue offers = KyValue::array());
Message welcomeMessage(const std::string& name, bool isKnown, KyValue offers = KyValue::array());
Message callMessage(std::int64_t id, const std::string& module, const std::string& method,
                    KyValue::Array arguments, std::chrono::milliseconds deadline);
Message resultMessage(std::int64_t id, KyValue value);
Message errorMessage(std::int64_t id, const KyError& error);
Message pingMessage(std::int64_t token);
Message pongMessage(std::int64_t token);
Message byeMessage(const std::string& why);

// What a robot says to whom it doesn't know (any more).
inline constexpr const char* kSayHelloFirst = "say hello first";
Message offersMessage(KyValue offers);
Message pieceMessage(std::uint64_t position, KyValue::Array sizes);
Message receivedMessage(std::int64_t position);
Message itemMessage(std::int64_t stream, std::int64_t number, KyValue value);
Message endMessage(std::int64_t stream, const std::string& why);
Message closeMessage(std::int64_t stream);

// The answer to a call that can't be read.
Message unreadableAnswer(const UnreadableMessage& error);

// The error that an Error message carries.
KyError errorOf(const Message& message);

// Throws KyError for a message beyond the limits.
Parts encode(Message message, const KyLimits& limits);

// Throws UnreadableMessage.
Message decode(const char* text, std::size_t size, const std::vector<KyBinary>& attachments,
               const KyLimits& limits);

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
// What two brokers say to each other. docs/protocol.md is the wire format in full.
#pragma once

#include <chrono>
#include <string>

#include "ky/value.h"
#include "wire/packing.h"

namespace Ky {

constexpr int kProtocolVersion = 1;

// The name under which every main broker answers calls itself.
constexpr const char* kBrokerModule = "KyBroker";

enum class MessageKind {
  Hello = 1,    // version, peer id, broker name, [module names]
  Welcome = 2,  // version, broker name
  Call = 3,     // id, module, method, [arguments], milliseconds until the caller gives up
  Result = 4,   // id, value
  Error = 5,    // id, module, method, text
  Ping = 6,     // token
  Pong = 7,     // token
  Bye = 8,      // why
};

// `fields` are those listed at the kind, already checked for their number and types.
struct Message {
  MessageKind kind;
  KyValue::Array fields;

  std::int64_t id() const { return fields[0].asInt64(); }
};

Message helloMessage(const std::string& peer, const std::string& name,
                     const std::vector<std::string>& modules);
Message welcomeMessage(const std::string& name);
Message callMessage(std::int64_t id, const std::string& module, const std::string& method,
                    KyValue::Array arguments, std::chrono::milliseconds deadline);
Message resultMessage(std::int64_t id, KyValue value);
Message errorMessage(std::int64_t id, const KyError& error);
Message pingMessage(std::int64_t token);
Message pongMessage(std::int64_t token);
Message byeMessage(const std::string& why);

// The error that an Error message carries.
KyError errorOf(const Message& message);

// Both throw KyError: a message beyond the limits, a message that is none.
Parts encode(Message message, const KyLimits& limits);
Message decode(const char* text, std::size_t size, const std::vector<KyBinary>& attachments,
               const KyLimits& limits);

}  // namespace Ky

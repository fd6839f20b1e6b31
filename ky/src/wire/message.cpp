// SPDX-License-Identifier: Apache-2.0
#include "wire/message.h"

#include <array>
#include <vector>

namespace Ky {
namespace {

constexpr int kKinds = 14;

// The types of the fields behind the kind. Nothing stands for a value of any type.
const std::vector<KyType>& fieldTypes(MessageKind kind) {
  using enum KyType;
  static const std::array<std::vector<KyType>, kKinds> kTypes = {{
      {Int, String, String, Array, Array},
      {Int, String, Bool, Array},
      {Int, String, String, Array, Int},
      {Int, Nothing},
      {Int, String, String, String},
      {Int},
      {Int},
      {String},
      {Array},
      {Int, Array},
      {Int},
      {Int, Int, Nothing},
      {Int, String},
      {Int},
  }};
  return kTypes[static_cast<std::size_t>(kind) - 1];
}

// `elements`: the kind and its fields.
Message toMessage(const KyValue::Array& elements) {
  const std::int64_t kind = elements.empty() ? 0 : elements[0].asInt64();
  if (kind < 1 || kind > kKinds) throw KyError("unknown kind of message " + std::to_string(kind));
  Message message{static_cast<MessageKind>(kind), {elements.begin() + 1, elements.end()}};
  const auto& types = fieldTypes(message.kind);
  // Who has nothing to offer need not say so.
  const bool mayOffer = message.kind == MessageKind::Hello || message.kind == MessageKind::Welcome;
  if (mayOffer && message.fields.size() + 1 == types.size())
    message.fields.push_back(KyValue::array());
  if (message.fields.size() != types.size())
    throw KyError("a message of kind " + std::to_string(kind) + " with " +
                  std::to_string(message.fields.size()) + " fields instead of " +
                  std::to_string(types.size()));
  for (std::size_t i = 0; i < types.size(); ++i)
    if (types[i] != KyType::Nothing && message.fields[i].type() != types[i])
      throw KyError("field " + std::to_string(i + 1) + " of a message of kind " +
                    std::to_string(kind) + " is no " + typeName(types[i]));
  return message;
}

std::optional<std::int64_t> idOfCall(const KyValue::Array& elements) {
  constexpr KyType kInt = KyType::Int;
  if (elements.size() < 2 || elements[0].type() != kInt || elements[1].type() != kInt) return {};
  if (elements[0].asInt64() != static_cast<int>(MessageKind::Call)) return {};
  return elements[1].asInt64();
}

}  // namespace

Message helloMessage(const std::string& peer, const std::string& name,
                     const std::vector<std::string>& modules, KyValue offers) {
  KyValue::Array names(modules.begin(), modules.end());
  return {MessageKind::Hello, {kProtocolVersion, peer, name, std::move(names), std::move(offers)}};
}

Message welcomeMessage(const std::string& name, bool isKnown, KyValue offers) {
  return {MessageKind::Welcome, {kProtocolVersion, name, isKnown, std::move(offers)}};
}

Message callMessage(std::int64_t id, const std::string& module, const std::string& method,
                    KyValue::Array arguments, std::chrono::milliseconds deadline) {
  return {MessageKind::Call, {id, module, method, std::move(arguments), deadline.count()}};
}

Message resultMessage(std::int64_t id, KyValue value) {
  return {MessageKind::Result, {id, std::move(value)}};
}

Message errorMessage(std::int64_t id, const KyError& error) {
  return {MessageKind::Error, {id, error.module(), error.method(), error.what()}};
}

Message pingMessage(std::int64_t token) {
  return {MessageKind::Ping, {token}};
}

Message pongMessage(std::int64_t token) {
  return {MessageKind::Pong, {token}};
}

Message byeMessage(const std::string& why) {
  return {MessageKind::Bye, {why}};
}

Message offersMessage(KyValue offers) {
  return {MessageKind::Offers, {std::move(offers)}};
}

Message pieceMessage(std::uint64_t position, KyValue::Array sizes) {
  return {MessageKind::Piece, {position, std::move(sizes)}};
}

Message receivedMessage(std::int64_t position) {
  return {MessageKind::Received, {position}};
}

Message itemMessage(std::int64_t stream, std::int64_t number, KyValue value) {
  return {MessageKind::Item, {stream, number, std::move(value)}};
}

Message endMessage(std::int64_t stream, const std::string& why) {
  return {MessageKind::End, {stream, why}};
}

Message closeMessage(std::int64_t stream) {
  return {MessageKind::Close, {stream}};
}

Message unreadableAnswer(const UnreadableMessage& error) {
  return errorMessage(error.call.value_or(0),
                      KyError(std::string("the call can't be read: ") + error.what()));
}

KyError errorOf(const Message& message) {
  return {message.fields[1].asString(), message.fields[2].asString(), message.fields[3].asString()};
}

Parts encode(Message message, const KyLimits& limits) {
  message.fields.insert(message.fields.begin(), KyValue(static_cast<int>(message.kind)));
  return pack(KyValue(std::move(message.fields)), limits);
}

Message decode(const char* text, std::size_t size, const std::vector<KyBinary>& attachments,
               const KyLimits& limits) {
  KyValue value;
  KyValue::Array begun;
  try {
    value = unpack(text, size, attachments, limits, &begun);
    return toMessage(value.asArray());
  } catch (const KyError& error) {
    throw UnreadableMessage(error.what(), idOfCall(value.isArray() ? value.asArray() : begun));
  }
}

}  // namespace Ky

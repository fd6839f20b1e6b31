// SPDX-License-Identifier: Apache-2.0
#include "ky/value.h"

#include <charconv>
#include <cstring>
#include <limits>

namespace Ky {
namespace {

void appendQuoted(std::string& to, const std::string& text) {
  static constexpr char kHex[] = "0123456789abcdef";
  to += '"';
  for (const char c : text) {
    switch (c) {
      case '"':
        to += "\\\"";
        break;
      case '\\':
        to += "\\\\";
        break;
      case '\n':
        to += "\\n";
        break;
      case '\t':
        to += "\\t";
        break;
      case '\r':
        to += "\\r";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          to += "\\u00";
          to += kHex[(c >> 4) & 0xF];
          to += kHex[c & 0xF];
        } else {
          to += c;
        }
    }
  }
  to += '"';
}

void append(std::string& to, const KyValue& value);

void appendElements(std::string& to, const KyValue::Array& elements) {
  to += '[';
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (i > 0) to += ", ";
    append(to, elements[i]);
  }
  to += ']';
}

void append(std::string& to, const KyValue& value) {
  switch (value.type()) {
    case KyType::Nothing:
      to += "null";
      break;
    case KyType::Bool:
      to += value.asBool() ? "true" : "false";
      break;
    case KyType::Int:
      to += std::to_string(value.asInt64());
      break;
    case KyType::Float: {
      char text[32];
      const auto end = std::to_chars(text, text + sizeof text, value.asDouble()).ptr;
      to.append(text, end);
      break;
    }
    case KyType::String:
      appendQuoted(to, value.asString());
      break;
    case KyType::Binary:
      to += "<" + std::to_string(value.asBinary().size()) + " bytes>";
      break;
    case KyType::Array:
      appendElements(to, value.asArray());
      break;
  }
}

}  // namespace

KyBinary::KyBinary(std::vector<std::uint8_t> bytes) {
  auto owner = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
  fData = owner->data();
  fSize = owner->size();
  fOwner = std::move(owner);
}

KyBinary::KyBinary(std::shared_ptr<const void> owner, const std::uint8_t* data, std::size_t size)
    : fOwner(std::move(owner)), fData(data), fSize(size) {
}

KyBinary KyBinary::copyOf(const void* data, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  return KyBinary(std::vector<std::uint8_t>(bytes, bytes + size));
}

bool KyBinary::operator==(const KyBinary& other) const {
  return fSize == other.fSize &&
         (fSize == 0 || fData == other.fData || std::memcmp(fData, other.fData, fSize) == 0);
}

const char* typeName(KyType type) {
  switch (type) {
    case KyType::Nothing:
      return "nothing";
    case KyType::Bool:
      return "bool";
    case KyType::Int:
      return "int";
    case KyType::Float:
      return "float";
    case KyType::String:
      return "string";
    case KyType::Binary:
      return "binary";
    case KyType::Array:
      return "array";
  }
  return "unknown";
}

KyValue KyValue::array(std::initializer_list<KyValue> elements) {
  return KyValue(Array(elements));
}

void KyValue::throwWrongType(KyType wanted) const {
  throw KyError(std::string("a value of type ") + typeName(type()) + " can't be read as " +
                typeName(wanted));
}

void KyValue::throwTooLarge() const {
  throw KyError("the number " + std::to_string(asInt64()) + " does not fit an int of 32 bits");
}

void KyValue::throwNoElement(std::size_t index) const {
  throw KyError("an array of " + std::to_string(size()) + " elements has no element " +
                std::to_string(index));
}

void KyValue::push(KyValue element) {
  if (isNothing()) fData = Array();
  if (Array* elements = std::get_if<Array>(&fData)) {
    elements->push_back(std::move(element));
    return;
  }
  throwWrongType(KyType::Array);
}

std::string KyValue::toString() const {
  std::string text;
  append(text, *this);
  return text;
}

}  // namespace Ky

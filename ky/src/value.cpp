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

template <class T>
const T& KyValue::get(KyType wanted) const {
  if (const T* data = std::get_if<T>(&fData)) return *data;
  throwWrongType(wanted);
}

bool KyValue::asBool() const {
  return get<bool>(KyType::Bool);
}

int KyValue::asInt() const {
  const std::int64_t number = asInt64();
  if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
    throw KyError("the number " + std::to_string(number) + " does not fit an int of 32 bits");
  return static_cast<int>(number);
}

std::int64_t KyValue::asInt64() const {
  return get<std::int64_t>(KyType::Int);
}

float KyValue::asFloat() const {
  return static_cast<float>(asDouble());
}

double KyValue::asDouble() const {
  if (isInt()) return static_cast<double>(asInt64());
  return get<double>(KyType::Float);
}

const std::string& KyValue::asString() const {
  return get<std::string>(KyType::String);
}

const KyBinary& KyValue::asBinary() const {
  return get<KyBinary>(KyType::Binary);
}

const KyValue::Array& KyValue::asArray() const {
  return get<Array>(KyType::Array);
}

std::size_t KyValue::size() const {
  return isNothing() ? 0 : asArray().size();
}

const KyValue& KyValue::operator[](std::size_t index) const {
  const Array& elements = asArray();
  if (index >= elements.size())
    throw KyError("an array of " + std::to_string(elements.size()) + " elements has no element " +
                  std::to_string(index));
  return elements[index];
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

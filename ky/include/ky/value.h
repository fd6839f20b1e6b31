// SPDX-License-Identifier: Apache-2.0
// The variant that every robot call takes and returns.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "ky/binary.h"
#include "ky/error.h"

namespace Ky {

enum class KyType { Nothing, Bool, Int, Float, String, Binary, Array };

// "nothing", "bool", "int", "float", "string", "binary", "array".
const char* typeName(KyType type);

// Nothing, a bool, a 64-bit int, a double, a UTF-8 string, a binary or an array of values.
//
// Accessors throw KyError when the value is of another type or the index is out of range. An int
// may be read as a float; a float is never read as an int. A plain value type: thread-safe to read,
// like any const object.
class KyValue {
 public:
  using Array = std::vector<KyValue>;

  KyValue() = default;
  // Exactly a bool: pointers would become one silently.
  template <class T, class = std::enable_if_t<std::is_same_v<T, bool>>, class = void>
  KyValue(T value) : fData(value) {}
  template <class T, class = std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>>>
  KyValue(T value) : fData(static_cast<std::int64_t>(value)) {}
  KyValue(float value) : fData(static_cast<double>(value)) {}
  KyValue(double value) : fData(value) {}
  KyValue(const char* value) : fData(std::string(value)) {}
  KyValue(std::string value) : fData(std::move(value)) {}
  KyValue(KyBinary value) : fData(std::move(value)) {}
  KyValue(Array value) : fData(std::move(value)) {}

  // KyValue::array({1, "two", 3.0}); array() is the empty array.
  static KyValue array(std::initializer_list<KyValue> elements = {});

  KyType type() const { return static_cast<KyType>(fData.index()); }
  bool isNothing() const { return type() == KyType::Nothing; }
  bool isBool() const { return type() == KyType::Bool; }
  bool isInt() const { return type() == KyType::Int; }
  bool isFloat() const { return type() == KyType::Float; }
  bool isString() const { return type() == KyType::String; }
  bool isBinary() const { return type() == KyType::Binary; }
  bool isArray() const { return type() == KyType::Array; }

  bool asBool() const { return get<bool>(KyType::Bool); }
  // Throws also when the number does not fit 32 bits.
  int asInt() const;
  std::int64_t asInt64() const { return get<std::int64_t>(KyType::Int); }
  // The float nearest to the value.
  float asFloat() const { return static_cast<float>(asDouble()); }
  double asDouble() const {
    return isInt() ? static_cast<double>(asInt64()) : get<double>(KyType::Float);
  }
  const std::string& asString() const { return get<std::string>(KyType::String); }
  const KyBinary& asBinary() const { return get<KyBinary>(KyType::Binary); }
  const Array& asArray() const { return get<Array>(KyType::Array); }

  // Number of elements; 0 for nothing. Throws for every other type that is no array.
  std::size_t size() const { return isNothing() ? 0 : asArray().size(); }
  const KyValue& operator[](std::size_t index) const;
  // Appends. Nothing becomes an array first.
  void push(KyValue element);

  // JSON: null, true, 7, 0.5, "text", [..]; a binary is "<N bytes>".
  std::string toString() const;

  bool operator==(const KyValue& other) const = default;

 private:
  [[noreturn]] void throwWrongType(KyType wanted) const;
  [[noreturn]] void throwTooLarge() const;
  [[noreturn]] void throwNoElement(std::size_t index) const;
  template <class T>
  const T& get(KyType wanted) const;

  // The order of the alternatives is the order of KyType.
  std::variant<std::monostate, bool, std::int64_t, double, std::string, KyBinary, Array> fData;
};

// ---- implementation: readers take values apart by the ten thousands

template <class T>
const T& KyValue::get(KyType wanted) const {
  if (const T* data = std::get_if<T>(&fData)) return *data;
  throwWrongType(wanted);
}

inline int KyValue::asInt() const {
  const std::int64_t number = asInt64();
  if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
    throwTooLarge();
  return static_cast<int>(number);
}

inline const KyValue& KyValue::operator[](std::size_t index) const {
  const Array& elements = asArray();
  if (index >= elements.size()) throwNoElement(index);
  return elements[index];
}

}  // namespace Ky

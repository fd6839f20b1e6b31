// The variant that every robot call takes and returns.
#pragma once

#include <cstdint>
#include <initializer_list>
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

  bool asBool() const;
  // Throws also when the number does not fit 32 bits.
  int asInt() const;
  std::int64_t asInt64() const;
  // The float nearest to the value.
  float asFloat() const;
  double asDouble() const;
  const std::string& asString() const;
  const KyBinary& asBinary() const;
  const Array& asArray() const;

  // Number of elements; 0 for nothing. Throws for every other type that is no array.
  std::size_t size() const;
  const KyValue& operator[](std::size_t index) const;
  // Appends. Nothing becomes an array first.
  void push(KyValue element);

  // JSON: null, true, 7, 0.5, "text", [..]; a binary is "<N bytes>".
  std::string toString() const;

  bool operator==(const KyValue& other) const = default;

 private:
  [[noreturn]] void throwWrongType(KyType wanted) const;
  template <class T>
  const T& get(KyType wanted) const;

  // The order of the alternatives is the order of KyType.
  std::variant<std::monostate, bool, std::int64_t, double, std::string, KyBinary, Array> fData;
};

}  // namespace Ky

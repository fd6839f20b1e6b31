// SPDX-License-Identifier: Apache-2.0
// How C++ arguments and results become KyValues and back: for typed proxies and bound methods.
#pragma once

#include <string>
#include <vector>

#include "ky/value.h"

namespace Ky {

// from() throws KyError when the value is of another type. typeName is what getMethodHelp shows.
template <class T>
struct KyConvert;

template <>
struct KyConvert<KyValue> {
  static constexpr const char* typeName = "value";
  static KyValue from(const KyValue& value) { return value; }
};
template <>
struct KyConvert<bool> {
  static constexpr const char* typeName = "bool";
  static bool from(const KyValue& value) { return value.asBool(); }
};
template <>
struct KyConvert<int> {
  static constexpr const char* typeName = "int";
  static int from(const KyValue& value) { return value.asInt(); }
};
template <>
struct KyConvert<std::int64_t> {
  static constexpr const char* typeName = "int";
  static std::int64_t from(const KyValue& value) { return value.asInt64(); }
};
template <>
struct KyConvert<float> {
  static constexpr const char* typeName = "float";
  static float from(const KyValue& value) { return value.asFloat(); }
};
template <>
struct KyConvert<double> {
  static constexpr const char* typeName = "float";
  static double from(const KyValue& value) { return value.asDouble(); }
};
template <>
struct KyConvert<std::string> {
  static constexpr const char* typeName = "string";
  static std::string from(const KyValue& value) { return value.asString(); }
};
template <>
struct KyConvert<KyBinary> {
  static constexpr const char* typeName = "binary";
  static KyBinary from(const KyValue& value) { return value.asBinary(); }
};
template <class T>
struct KyConvert<std::vector<T>> {
  static constexpr const char* typeName = "array";
  static std::vector<T> from(const KyValue& value) {
    std::vector<T> result;
    result.reserve(value.asArray().size());
    for (const KyValue& element : value.asArray()) result.push_back(KyConvert<T>::from(element));
    return result;
  }
};

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "value_from_bytes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr int kDepth = 8;
constexpr std::size_t kElements = 16;  // more than any entry or record has

}  // namespace

std::uint8_t ValueFromBytes::byte() {
  if (fLeft == 0) return 0;
  --fLeft;
  return *fData++;
}

template <class T>
T ValueFromBytes::number() {
  T result{};
  const std::size_t size = std::min(sizeof result, fLeft);
  std::memcpy(&result, fData, size);
  fData += size;
  fLeft -= size;
  return result;
}

std::string ValueFromBytes::text() {
  const std::size_t size = std::min<std::size_t>(byte(), fLeft);
  std::string result(reinterpret_cast<const char*>(fData), size);
  fData += size;
  fLeft -= size;
  return result;
}

Ky::KyValue ValueFromBytes::array(int depth) {
  Ky::KyValue::Array elements;
  const std::size_t size = byte() % kElements;
  while (elements.size() < size && fLeft > 0) elements.push_back(value(depth + 1));
  return elements;
}

Ky::KyValue ValueFromBytes::extremeNumber() {
  switch (byte() % 6) {
    case 0:
      return std::numeric_limits<std::int64_t>::min();
    case 1:
      return std::numeric_limits<std::int64_t>::max();
    case 2:
      return std::numeric_limits<double>::infinity();
    case 3:
      return -std::numeric_limits<double>::infinity();
    case 4:
      return std::nan("");
    default:
      return std::numeric_limits<double>::max();
  }
}

Ky::KyValue ValueFromBytes::value(int depth) {
  switch (byte() % 10) {
    case 0:
      return {};
    case 1:
      return byte() % 2 == 1;
    case 2:
      return number<std::int64_t>();
    case 3:
      return static_cast<int>(byte());
    case 4:
      return number<double>();
    case 5:
      return number<float>();
    case 6:
      return text();
    case 7:
      return Ky::KyBinary::copyOf("binary", 6);
    case 8:
      return extremeNumber();
    default:
      return depth < kDepth ? array(depth) : Ky::KyValue();
  }
}

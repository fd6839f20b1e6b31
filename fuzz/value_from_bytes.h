// SPDX-License-Identifier: Apache-2.0
// Any bytes are some value: a fuzzer's way to every shape a robot could send.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ky/value.h"

// Reads values off a run of bytes; when the bytes are used up, all that is left is nothing.
class ValueFromBytes {
 public:
  ValueFromBytes(const std::uint8_t* data, std::size_t size) : fData(data), fLeft(size) {}

  bool isEmpty() const { return fLeft == 0; }
  std::uint8_t byte();
  Ky::KyValue value(int depth = 0);

 private:
  Ky::KyValue array(int depth);
  Ky::KyValue extremeNumber();
  template <class T>
  T number();
  std::string text();

  const std::uint8_t* fData;
  std::size_t fLeft;
};

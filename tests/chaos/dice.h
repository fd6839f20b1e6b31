// SPDX-License-Identifier: Apache-2.0
// Chance that can be repeated, on every computer.
#pragma once

#include <chrono>
#include <cstdint>
#include <random>

// The standard says what the generator gives, but not what its distributions make of it. Not
// thread-safe.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : fGenerator(seed) {}

  // One of `lowest`..`highest`, both included.
  int number(int lowest, int highest) {
    const auto range = static_cast<std::uint64_t>(highest - lowest) + 1;
    return lowest + static_cast<int>(fGenerator() * range >> 32);
  }
  // Small ones come more often: half of them are below a quarter of the way, and none is forgotten.
  int mostlySmall(int lowest, int highest) {
    const auto part = static_cast<std::uint64_t>(number(0, 1000));
    const auto range = static_cast<std::uint64_t>(highest - lowest);
    return lowest + static_cast<int>(range * part * part / 1'000'000);
  }
  std::chrono::milliseconds time(int lowestMs, int highestMs) {
    return std::chrono::milliseconds(mostlySmall(lowestMs, highestMs));
  }
  template <class List>
  const auto& oneOf(const List& list) {
    return list[static_cast<std::size_t>(number(0, static_cast<int>(std::size(list)) - 1))];
  }

 private:
  std::mt19937 fGenerator;
};

// SPDX-License-Identifier: Apache-2.0
// How like two pictures of an image record are.
#pragma once

#include <cmath>

#include "ky/binary.h"

// The peak signal to noise ratio of every `step`th byte from `first` on, in decibels: 0 of pictures
// of different size, 99 of equal ones.
inline double likeness(const Ky::KyBinary& a, const Ky::KyBinary& b, std::size_t first,
                       std::size_t step) {
  if (a.size() != b.size()) return 0;
  double sum = 0;
  double count = 0;
  for (std::size_t i = first; i < a.size(); i += step, ++count) {
    const double difference = a.data()[i] - b.data()[i];
    sum += difference * difference;
  }
  return sum == 0 ? 99 : 10 * std::log10(255.0 * 255.0 * count / sum);
}

inline double likenessOfLuminance(const Ky::KyBinary& a, const Ky::KyBinary& b, int colorSpace) {
  return likeness(a, b, 0, colorSpace == 0 ? 1 : colorSpace == 9 ? 2 : 3);
}

// SPDX-License-Identifier: Apache-2.0
#include "support/damaged_bytes.h"

#include <algorithm>

std::string DamagedBytes::take(std::string_view bytes) {
  if (fSettings.damage == LinkDamage::None) return std::string(bytes);
  std::string result;
  if (fSettings.damage == LinkDamage::Swallow) return result;
  while (!bytes.empty()) {
    const std::size_t intact = std::min(fIntact, bytes.size());
    result.append(bytes.substr(0, intact));
    bytes.remove_prefix(intact);
    fIntact -= intact;
    if (!bytes.empty()) bytes.remove_prefix(damage(bytes, result));
  }
  return result;
}

// Returns how many bytes it has used up: at least one, or there would be no end.
std::size_t DamagedBytes::damage(std::string_view bytes, std::string& result) {
  const std::size_t length = std::max<std::size_t>(1, fSettings.damageLength);
  if (fSettings.damage == LinkDamage::CutOut) {
    if (fMissing == 0) fMissing = length;
    const std::size_t used = std::min(fMissing, bytes.size());
    fMissing -= used;
    if (fMissing == 0) fIntact = fSettings.damageEvery;
    return used;
  }
  const std::size_t used =
      fSettings.damage == LinkDamage::Garble ? 1 : std::min(length, bytes.size());
  fIntact = fSettings.damageEvery;
  if (fSettings.damage == LinkDamage::Garble) {
    result.push_back(static_cast<char>(bytes.front() ^ (1 << (fBit++ % 8))));
  } else {
    for (int copy = 0; copy < 2; ++copy) result.append(bytes.substr(0, used));
  }
  return used;
}

// SPDX-License-Identifier: Apache-2.0
// What a link does to the bytes that cross it one way.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

enum class LinkDamage {
  None,
  Swallow,  // all bytes vanish
  Garble,   // a bit of every `damageEvery`th byte is flipped
  CutOut,   // after every `damageEvery` bytes `damageLength` of them are missing
  Double    // after every `damageEvery` bytes `damageLength` of them come twice
};

struct LinkSettings {
  std::chrono::microseconds delay{0};  // from one end to the other
  std::uint64_t bitsPerSecond = 0;     // 0: as fast as it goes
  // From now on in turns: `stallEvery` - `stallFor` it works, `stallFor` nothing leaves. 0: never.
  std::chrono::milliseconds stallEvery{0};
  std::chrono::milliseconds stallFor{0};
  LinkDamage damage = LinkDamage::None;
  std::size_t damageEvery = 1000;
  std::size_t damageLength = 100;
};

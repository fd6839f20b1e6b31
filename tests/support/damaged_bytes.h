// SPDX-License-Identifier: Apache-2.0
// Damages a stream of bytes, in the same places every time.
#pragma once

#include <string>
#include <string_view>

#include "support/link_settings.h"

// Not thread-safe.
class DamagedBytes {
 public:
  DamagedBytes() = default;
  explicit DamagedBytes(const LinkSettings& settings)
      : fSettings(settings), fIntact(settings.damageEvery) {}

  // What becomes of the next bytes of the stream.
  std::string take(std::string_view bytes);

 private:
  std::size_t damage(std::string_view bytes, std::string& result);

  LinkSettings fSettings;
  std::size_t fIntact = 0;   // bytes that still pass as they are
  std::size_t fMissing = 0;  // bytes that are cut out, after these
  unsigned fBit = 0;
};

// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/detector.h"

namespace robot {

Ky::KyValue findings(const Frame& frame, Ky::KyValue::Array entries) {
  if (entries.empty()) return Ky::KyValue::Array{};
  constexpr std::int64_t kSecond = 1000000;
  return Ky::KyValue::Array{Ky::KyValue::Array{frame.time() / kSecond, frame.time() % kSecond},
                            std::move(entries)};
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robots/bandwidth.h"

#include <utility>

namespace Lookout {

double Bandwidth::update(std::uint64_t bytes, Time now) {
  const auto last = std::exchange(fLast, Sample{bytes, now});
  if (!last || bytes < last->bytes || now <= last->time) return 0;
  const std::chrono::duration<double> elapsed = now - last->time;
  return static_cast<double>(bytes - last->bytes) / elapsed.count();
}

}  // namespace Lookout

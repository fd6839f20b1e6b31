// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/subscriptions.h"

#include <algorithm>

#include "ky/error.h"

namespace robot {
namespace {

using Ky::KyError;

constexpr std::size_t kMaxName = 128;      // bytes
constexpr std::ptrdiff_t kMaxOfPeer = 32;  // subscriptions

}  // namespace

void Subscriptions::add(const Ky::KyPeer& peer, const std::string& name,
                        std::chrono::milliseconds period) {
  if (name.empty() || name.size() > kMaxName)
    throw KyError("a subscriber's name has 1 to " + std::to_string(kMaxName) + " bytes");
  if (period.count() < 0)
    throw KyError("a period of " + std::to_string(period.count()) +
                  " ms can't be kept; 0 is as often as possible");
  const bool known = fPeriods.count({peer.id, name}) != 0;
  const auto ofPeer = [&](const auto& entry) { return entry.first.first == peer.id; };
  if (!known && std::count_if(fPeriods.begin(), fPeriods.end(), ofPeer) >= kMaxOfPeer)
    throw KyError("there are " + std::to_string(kMaxOfPeer) +
                  " subscriptions already; unsubscribe first");
  auto& kept = fPeriods.try_emplace({peer.id, name}, period).first->second;
  kept = std::min(kept, period);
}

void Subscriptions::remove(const Ky::KyPeer& peer, const std::string& name) {
  fPeriods.erase({peer.id, name});
}

void Subscriptions::removeAllOf(const Ky::KyPeer& peer) {
  std::erase_if(fPeriods, [&](const auto& entry) { return entry.first.first == peer.id; });
}

bool Subscriptions::has(const Ky::KyPeer& peer) const {
  return std::any_of(fPeriods.begin(), fPeriods.end(),
                     [&](const auto& entry) { return entry.first.first == peer.id; });
}

std::optional<std::chrono::milliseconds> Subscriptions::period() const {
  std::optional<std::chrono::milliseconds> shortest;
  for (const auto& [subscriber, period] : fPeriods)
    if (!shortest || period < *shortest) shortest = period;
  return shortest;
}

}  // namespace robot

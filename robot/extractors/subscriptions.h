// SPDX-License-Identifier: Apache-2.0
// Who wants an extractor to look at pictures, and how often.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "ky/peer.h"

namespace robot {

// A subscriber is known by peer and name: two desktops of one name are two subscribers. Not
// thread-safe.
class Subscriptions {
 public:
  // A subscriber that is there already keeps the shorter of the two periods: a desktop that watches
  // two kinds of things in one module subscribes twice, at different periods. Throws KyError: a
  // period below 0, a name that is empty or too long, too many subscriptions of one peer.
  void add(const Ky::KyPeer& peer, const std::string& name, std::chrono::milliseconds period);
  // Of a subscriber that is not there: does nothing, since that desktop also ends it twice.
  void remove(const Ky::KyPeer& peer, const std::string& name);
  void removeAllOf(const Ky::KyPeer& peer);

  bool has(const Ky::KyPeer& peer) const;
  // The shortest period that somebody wants; none without subscribers.
  std::optional<std::chrono::milliseconds> period() const;

 private:
  std::map<std::pair<std::string, std::string>, std::chrono::milliseconds> fPeriods;
};

}  // namespace robot

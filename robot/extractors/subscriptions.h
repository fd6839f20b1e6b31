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
  // Replaces the subscriber's earlier period. Throws KyError: a period below 0, a name that is
  // empty or too long, too many subscriptions of one peer.
  void add(const Ky::KyPeer& peer, const std::string& name, std::chrono::milliseconds period);
  // Throws KyError when there is no such subscriber.
  void remove(const Ky::KyPeer& peer, const std::string& name);
  void removeAllOf(const Ky::KyPeer& peer);
  void clear() { fPeriods.clear(); }

  bool has(const Ky::KyPeer& peer) const;
  // The shortest period that somebody wants; none without subscribers.
  std::optional<std::chrono::milliseconds> period() const;

 private:
  std::map<std::pair<std::string, std::string>, std::chrono::milliseconds> fPeriods;
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
// What others' modules do beyond what every robot's do.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "ky/value.h"
#include "zu/mutex.h"

namespace Ky {

// "MODULE.WHAT", by the route over which it was said. Thread-safe.
class Offers {
 public:
  using Set = std::set<std::string>;

  // Replaces what was said over this route. True when that changes what all() answers.
  bool set(const std::string& route, Set offers);
  bool remove(const std::string& route) { return set(route, {}); }
  // The same peer on another connection.
  void rename(const std::string& route, const std::string& newRoute);
  bool contains(const std::string& offer) const;
  Set all() const;

 private:
  mutable zu::Mutex fMutex;
  std::map<std::string, Set> fOffers ZU_GUARDED_BY(fMutex);
};

// As they stand in a message.
KyValue offersToValue(const Offers::Set& offers);
constexpr std::size_t kMaxOffers = 256;
// What is no offer, or not of one of `modules` where they are given, is left out, and what goes
// beyond kMaxOffers: nobody makes others hold more.
Offers::Set offersFromValue(const KyValue& value, const std::set<std::string>* modules = nullptr);

}  // namespace Ky

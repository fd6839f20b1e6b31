// SPDX-License-Identifier: Apache-2.0
#include "broker/offers.h"

#include <algorithm>

namespace Ky {
namespace {

constexpr std::size_t kLongestOffer = 128;

}  // namespace

bool Offers::set(const std::string& route, Set offers) {
  const zu::MutexLock guard(fMutex);
  Set& known = fOffers[route];
  const bool isNew = known != offers;
  known = std::move(offers);
  if (known.empty()) fOffers.erase(route);
  return isNew;
}

void Offers::rename(const std::string& route, const std::string& newRoute) {
  const zu::MutexLock guard(fMutex);
  auto entry = fOffers.extract(route);
  if (entry.empty()) return;
  entry.key() = newRoute;
  fOffers.insert(std::move(entry));
}

bool Offers::contains(const std::string& offer) const {
  const zu::MutexLock guard(fMutex);
  return std::any_of(fOffers.begin(), fOffers.end(),
                     [&](const auto& entry) { return entry.second.contains(offer); });
}

Offers::Set Offers::all() const {
  const zu::MutexLock guard(fMutex);
  Set all;
  for (const auto& [route, offers] : fOffers) all.insert(offers.begin(), offers.end());
  return all;
}

KyValue offersToValue(const Offers::Set& offers) {
  return KyValue::Array(offers.begin(), offers.end());
}

Offers::Set offersFromValue(const KyValue& value, const std::set<std::string>* modules) {
  Offers::Set offers;
  for (const KyValue& offer : value.asArray()) {
    if (!offer.isString() || offer.asString().size() > kLongestOffer) continue;
    const std::string& text = offer.asString();
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos) continue;
    if (modules != nullptr && !modules->contains(text.substr(0, dot))) continue;
    offers.insert(text);
    if (offers.size() == kMaxOffers) break;
  }
  return offers;
}

}  // namespace Ky

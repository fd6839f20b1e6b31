// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/set_history.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kKept = kSecond;
constexpr std::int64_t kFresh = 2 * kSecond;
// Of the newest picture: what claims to have been seen later is by another clock.
constexpr std::int64_t kMostAhead = kSecond;
constexpr std::int64_t kOld = kSecond / 2;
constexpr std::int64_t kOldAtAnyRhythm = 2 * kSecond;
constexpr std::int64_t kSteady = kSecond / 2;  // between two looks
constexpr std::size_t kMostSets = 64;

bool isTimely(std::int64_t seen, std::int64_t newest) {
  return seen > 0 && newest > 0 && seen <= newest + kMostAhead;
}

}  // namespace

void SetHistory::add(OverlaySet set, std::int64_t newest) {
  if (isTimely(set->seen, newest))
    addTimed(std::move(set), newest);
  else if (set->items.empty() && isTimed())
    addNothing(std::move(set), newest);
  else
    addPlain(std::move(set));
  fLookedAt = newest;
  forget(newest);
}

void SetHistory::addPlain(OverlaySet set) {
  fSets.clear();
  fPlain = std::move(set);
}

void SetHistory::addTimed(OverlaySet set, std::int64_t newest) {
  const std::int64_t seen = set->seen;
  if (isTimed() && fSets.back().set->seen == seen) {
    fSets.back().set = std::move(set);
    return;
  }
  // A clock that was set back.
  if (isTimed() && seen < fSets.back().time && fSets.back().set->seen > seen) fSets.clear();
  fRhythm = isTimed() && fSets.back().set->seen > 0 ? seen - fSets.back().time : 0;
  fLastLateness = std::max<std::int64_t>(newest - seen, 0);
  if (newest - fLookedAt <= kSteady) fArrivals.push_back({newest, fLastLateness});
  // A guess of when nothing was seen may have been too late.
  while (isTimed() && fSets.back().time >= seen) fSets.pop_back();
  fSets.push_back({seen, std::move(set)});
  fPlain = nullptr;
}

void SetHistory::addNothing(OverlaySet set, std::int64_t newest) {
  if (fSets.back().set->items.empty()) return;
  fSets.push_back({std::max(newest - fLastLateness, fSets.back().time + 1), std::move(set)});
}

void SetHistory::forget(std::int64_t newest) {
  // The first set is the one for pictures until the second one's.
  while (fSets.size() > 1 && (fSets.size() > kMostSets || fSets[1].time <= newest - kKept))
    fSets.pop_front();
  while (!fArrivals.empty() && fArrivals.front().time <= newest - kFresh) fArrivals.pop_front();
}

OverlaySet SetHistory::newestSet() const {
  return isTimed() ? fSets.back().set : fPlain;
}

OverlaySet SetHistory::seenAt(std::int64_t time) const {
  if (!isTimed()) return fPlain;
  const auto later = std::find_if(fSets.begin(), fSets.end(),
                                  [time](const Seen& seen) { return seen.time > time; });
  if (later == fSets.begin()) return nullptr;
  const auto earlier = std::prev(later);
  const bool isLaterNearer = later != fSets.end() && later->time - time < time - earlier->time;
  return isLaterNearer ? later->set : earlier->set;
}

std::int64_t SetHistory::lateness() const {
  std::int64_t most = 0;
  for (const Arrival& arrival : fArrivals) most = std::max(most, arrival.lateness);
  return most;
}

bool SetHistory::isOld(std::int64_t age) const {
  return age > std::clamp(fRhythm + fRhythm / 2, kOld, kOldAtAnyRhythm);
}

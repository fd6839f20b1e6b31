// SPDX-License-Identifier: Apache-2.0
#include "transport/pace.h"

#include <algorithm>

namespace Ky {
namespace {

// What every link carries in a round trip without harm; and the least that is worth a message.
constexpr double kLeastWindow = 4 * 1024;
constexpr double kLeastPiece = 1024;
constexpr double kFirstWindow = 64 * 1024;
constexpr double kFirstPiece = 16 * 1024;
constexpr double kMostWindow = 256.0 * 1024 * 1024;
// By how much the rate may fall in a round whose best was lower.
constexpr double kFall = 0.8;
// While the limit is looked for, the rate grows by this much or more a round.
constexpr double kGrowth = 1.25;
constexpr int kRoundsAtLimit = 3;
// A round trip that is no longer than this is as short as the shortest.
constexpr double kAsBefore = 1.1;
constexpr Pace::Span kJitter{0.002};
// What may be on its way, of a round trip's, while that is looked for: the rate may be too high.
constexpr double kProbe = 0.125;
constexpr Pace::Span kLastProbeAfter{16};

}  // namespace

std::size_t Pace::room() const {
  const auto most = static_cast<std::uint64_t>(window());
  return inFlight() >= most ? 0 : static_cast<std::size_t>(most - inFlight());
}

std::size_t Pace::piece() const {
  const double bytes = fRate == 0 ? kFirstPiece : fRate * kPiece.count();
  return static_cast<std::size_t>(std::max(kLeastPiece, bytes));
}

double Pace::window() const {
  if (fRate == 0) return kFirstWindow;
  const double oneTrip = fRate * fRoundTrip.count();
  if (fIsProbing) return std::max(kLeastPiece, kProbe * oneTrip);
  const double most =
      fIsStarting ? 2 * oneTrip + fRate * kQueue.count() : oneTrip + fRate * kQueue.count();
  return std::clamp(most, kLeastWindow, kMostWindow);
}

void Pace::sent(std::size_t bytes, Time now) {
  if (fInFlight.empty()) fDeliveredAt = now;  // nothing could be delivered before
  fSent += bytes;
  fInFlight.push_back({fSent, now, fDelivered, fDeliveredAt});
}

void Pace::acknowledged(std::uint64_t total, Time now) {
  if (total > fSent || total <= fDelivered) return;
  fDelivered = total;
  fDeliveredAt = now;
  while (!fInFlight.empty() && fInFlight.front().end <= total) {
    const Sent newest = fInFlight.front();
    fInFlight.pop_front();
    if (!fInFlight.empty() && fInFlight.front().end <= total) continue;
    // What had to wait in front of the link tells what it carries, too.
    if (fRoundTrip > Span::zero() && now - newest.at > fRoundTrip + 2 * kQueue) waits();
    measureRoundTrip(newest, now);
    measureRate(newest, now);
    if (newest.delivered >= fRoundEnd) endRound(now);
  }
}

void Pace::giveUpLost(Time now) {
  if (fInFlight.empty()) return;
  const Span silence = now - std::max(fInFlight.front().at, fDeliveredAt);
  if (silence < std::max(kLost, kLostRoundTrips * fRoundTrip)) return;
  fInFlight.clear();
  fDelivered = fSent;
  fDeliveredAt = now;
}

void Pace::measureRoundTrip(const Sent& sent, Time now) {
  const Span trip = now - sent.at;
  if (fIsProbing) {
    // What was sent before may have waited behind more than is allowed now.
    if (sent.at >= fRoundTripAt && (fProbed == Span::zero() || trip < fProbed))
      fProbed = std::max(trip, Span(1e-6));
    return;
  }
  if (fRoundTrip == Span::zero() || trip <= fRoundTrip)
    fRoundTrip = std::max(trip, Span(1e-6));
  else if (trip > kAsBefore * fRoundTrip + kJitter)
    return;
  fRoundTripAt = now;
}

void Pace::measureRate(const Sent& sent, Time now) {
  const Span took = std::max<Span>(now - sent.deliveredAt, Span(1e-6));
  const double rate = static_cast<double>(fDelivered - sent.delivered) / took.count();
  fBestOfRound = std::max(fBestOfRound, rate);
  fRate = std::max(fRate, rate);
}

void Pace::endRound(Time now) {
  if (fRoundWasFull) fRate = std::max(fBestOfRound, kFall * fRate);
  if (fIsStarting && fRoundWasFull) lookForLimit();
  if (fIsProbing) {
    fIsProbing = false;
    if (fProbed > Span::zero()) fRoundTrip = fProbed;
  } else if (now - fRoundTripAt > fProbeAfter) {
    // It may be longer by now; a round without a queue will tell.
    fIsProbing = true;
    fProbeAfter = std::min(2 * fProbeAfter, kLastProbeAfter);
    fProbed = Span::zero();
    fRoundTripAt = now;
  }
  fRoundEnd = fDelivered;
  fBestOfRound = 0;
  fRoundWasFull = false;
}

void Pace::lookForLimit() {
  if (fRate >= kGrowth * fRateBefore) {
    fRateBefore = fRate;
    fRoundsWithoutGrowth = 0;
  } else if (++fRoundsWithoutGrowth == kRoundsAtLimit) {
    fIsStarting = false;
  }
}

}  // namespace Ky

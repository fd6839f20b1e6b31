// SPDX-License-Identifier: Apache-2.0
// How much a connection carries, measured by what its other end acknowledges.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>

namespace Ky {

// Says how many bytes may be on their way, so that the link is never idle and nothing piles up in
// front of it: what it carries in one round trip, and kQueue more. Both are measured as BBR does
// (Cardwell et al., "BBR: Congestion-Based Congestion Control", ACM Queue 14, 5): the rate is the
// highest that was delivered lately, the round trip the shortest.
//
// As long as nothing waits, for room or in front of the link, what is delivered tells little of the
// link: it may raise the rate, never lower it. Thread-bound; brings no clock of its own.
class Pace {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Span = std::chrono::duration<double>;

  // How long what is sent may have to wait in front of the link.
  static constexpr Span kQueue{0.030};
  // How long the link takes for a piece: what is urgent waits no longer for one that goes out.
  static constexpr Span kPiece{0.010};
  // Connections lose nothing, as a rule: but what stands between their ends may. The least time
  // without a word after which that is believed, and in round trips.
  static constexpr Span kLost{1.0};
  static constexpr double kLostRoundTrips = 4;

  // How many bytes may be sent now.
  std::size_t room() const;
  // The longest piece that holds nothing up; some 16 KiB while nothing is known.
  std::size_t piece() const;
  void sent(std::size_t bytes, Time now);
  // There is more to send than there is room for.
  void waits() { fRoundWasFull = true; }
  // The other end has received what was sent up to and with the byte `total`. More than was sent is
  // not believed.
  void acknowledged(std::uint64_t total, Time now);
  // What has been on its way for so long without a word that it must be lost does not count any
  // more; to be called from time to time.
  void giveUpLost(Time now);

  std::uint64_t sentBytes() const { return fSent; }  // in all
  std::uint64_t inFlight() const { return fSent - fDelivered; }
  double bytesPerSecond() const { return fRate; }  // 0: not known yet
  Span roundTrip() const { return fRoundTrip; }    // without waiting; 0: not known yet

 private:
  struct Sent {
    std::uint64_t end;  // bytes sent up to and with this
    Time at;
    std::uint64_t delivered;  // when it was sent
    Time deliveredAt;
  };

  void measureRoundTrip(const Sent& sent, Time now);
  void measureRate(const Sent& sent, Time now);
  void endRound(Time now);
  void lookForLimit();
  double window() const;

  std::deque<Sent> fInFlight;
  std::uint64_t fSent = 0;
  std::uint64_t fDelivered = 0;
  Time fDeliveredAt{};
  double fRate = 0;
  Span fRoundTrip{0};
  Time fRoundTripAt{};
  // A round ends when something is acknowledged that was sent after its beginning.
  std::uint64_t fRoundEnd = 0;  // delivered by then
  double fBestOfRound = 0;
  bool fRoundWasFull = false;  // something waited for room during it
  bool fIsStarting = true;     // the limit of the link is yet to be found
  double fRateBefore = 0;      // at the last round in which it grew
  int fRoundsWithoutGrowth = 0;
  bool fIsProbing = false;  // holds back for a round, to see the round trip without a queue
  Span fProbed{0};          // the shortest since then
  Span fProbeAfter{1};      // the first measure is of pieces that were too long, maybe
};

}  // namespace Ky

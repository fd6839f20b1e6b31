// SPDX-License-Identifier: Apache-2.0
// The pace on links that exist in numbers only: no time passes.
#include "transport/pace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <queue>
#include <vector>

using Ky::Pace;
using namespace std::chrono_literals;

namespace {

using Time = Pace::Time;
using Span = Pace::Span;

// A queue of unlimited length in front of a link of some rate and delay each way; acknowledgements
// come back over a link of that delay.
class Link {
 public:
  Link(double bytesPerSecond, Span delay) : rate(bytesPerSecond), fDelay(delay) {}

  // Sends pieces of `frame` bytes `fps` times a second, or as fast as may be where that is 0, for a
  // time; what can't be sent before the next frame is due is dropped.
  void run(Span time, double fps = 0, std::size_t frame = 0) {
    const Time end = now + in(time);
    for (; now < end; now += 1ms) {
      while (!fAcks.empty() && fAcks.front().at <= now) {
        pace.acknowledged(fAcks.front().total, now);
        fAcks.pop();
      }
      if (fps > 0 && now >= fNextFrame) {
        fNextFrame = std::max(fNextFrame, now) + in(Span(1 / fps));
        fToSend = frame;
      }
      const bool isEndless = fps == 0;
      while (isEndless || fToSend > 0) {
        const std::size_t piece = isEndless ? pace.piece() : std::min(fToSend, pace.piece());
        if (piece > pace.room() && pace.inFlight() > 0) {
          pace.waits();
          break;
        }
        if (!isEndless) fToSend -= piece;
        send(piece);
      }
    }
  }
  // Nothing gets through for a while.
  void stall(Span time) { fFreeAt = std::max(fFreeAt, now) + in(time); }

  double delivered() const { return fDelivered; }
  // How long a byte that is sent now would wait in front of the link.
  Span queue() const { return std::max<Span>(fFreeAt - now, Span::zero()); }
  std::vector<double> waits;  // of every piece, in ms
  double rate;
  Pace pace;
  Time now{1000s};

 private:
  static Time::duration in(Span span) { return std::chrono::duration_cast<Time::duration>(span); }

  void send(std::size_t bytes) {
    pace.sent(bytes, now);
    fDelivered += static_cast<double>(bytes);
    waits.push_back(queue().count() * 1000);
    fFreeAt = std::max(fFreeAt, now) + in(Span(static_cast<double>(bytes) / rate));
    fTotal += bytes;
    fAcks.push({fFreeAt + in(2 * fDelay), fTotal});
  }

  struct Ack {
    Time at;
    std::uint64_t total;
  };
  const Span fDelay;
  Time fFreeAt{};
  Time fNextFrame{};
  std::size_t fToSend = 0;
  std::queue<Ack> fAcks;
  std::uint64_t fTotal = 0;
  double fDelivered = 0;
};

double percentile95(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[values.size() * 95 / 100];
}

struct Case {
  const char* name;
  double mbits;
  double delayMs;
};

class PaceOnLinks : public testing::TestWithParam<Case> {
 protected:
  double bytesPerSecond() const { return GetParam().mbits * 1e6 / 8; }
  Link link{bytesPerSecond(), Span(GetParam().delayMs / 1000)};
};

INSTANTIATE_TEST_SUITE_P(Of, PaceOnLinks,
                         testing::Values(Case{"Slow", 2, 25}, Case{"Home", 20, 25},
                                         Case{"Near", 10, 10}, Case{"Fast", 100, 10},
                                         Case{"Far", 50, 100}, Case{"Ethernet", 1000, 1}),
                         [](const auto& link) { return link.param.name; });

}  // namespace

TEST_P(PaceOnLinks, FillsTheLinkAndLetsLittleWait) {
  link.run(Span(3));
  const double before = link.delivered();
  link.waits.clear();
  link.run(Span(30));
  EXPECT_GT((link.delivered() - before) / 30, 0.9 * bytesPerSecond());
  EXPECT_LT(percentile95(link.waits), 60);
}

TEST_P(PaceOnLinks, FindsTheRateWithinTenRoundTrips) {
  link.run(Span(0.1 + 10 * 2 * GetParam().delayMs / 1000));
  EXPECT_GT(link.pace.bytesPerSecond(), 0.8 * bytesPerSecond());
  EXPECT_LT(link.pace.bytesPerSecond(), 1.3 * bytesPerSecond());
}

TEST_P(PaceOnLinks, FollowsALinkThatBecomesSlowerAndFasterAgain) {
  link.run(Span(5));
  link.rate = bytesPerSecond() / 4;
  link.run(Span(5));
  EXPECT_LT(link.pace.bytesPerSecond(), 1.3 * bytesPerSecond() / 4);
  link.waits.clear();
  link.run(Span(5));
  EXPECT_LT(percentile95(link.waits), 80);
  link.rate = bytesPerSecond();
  link.run(Span(5));
  EXPECT_GT(link.pace.bytesPerSecond(), 0.8 * bytesPerSecond());
}

TEST_P(PaceOnLinks, KeepsWhatItKnowsWhileLessIsSentThanTheLinkCarries) {
  link.run(Span(3));
  link.run(Span(60), 30, static_cast<std::size_t>(bytesPerSecond() / 30 / 10));
  EXPECT_GT(link.pace.bytesPerSecond(), 0.7 * bytesPerSecond());
  EXPECT_LT(link.pace.bytesPerSecond(), 1.5 * bytesPerSecond());
}

TEST_P(PaceOnLinks, KeepsWhatItKnowsWhileSomethingLargerIsSentNowAndThen) {
  link.run(Span(3));
  // Of some pieces each, and less than there is room for.
  link.run(Span(60), 5, static_cast<std::size_t>(0.025 * bytesPerSecond()));
  EXPECT_GT(link.pace.bytesPerSecond(), 0.7 * bytesPerSecond());
  EXPECT_LT(link.pace.bytesPerSecond(), 1.5 * bytesPerSecond());
}

TEST_P(PaceOnLinks, FollowsALinkThatBecomesMuchSlowerThoughNothingWaitsForRoom) {
  link.run(Span(3));
  link.rate = bytesPerSecond() / 10;
  const auto frame = static_cast<std::size_t>(1.2 * link.rate / 30);
  link.run(Span(10), 30, frame);
  link.waits.clear();
  link.run(Span(10), 30, frame);
  EXPECT_LT(percentile95(link.waits), 250);
}

TEST_P(PaceOnLinks, GoesOnAfterEachStallAsBefore) {
  link.run(Span(3));
  const double before = link.delivered();
  for (int i = 0; i < 10; ++i) {
    link.stall(Span(0.3));
    link.run(Span(1));
  }
  EXPECT_GT((link.delivered() - before) / 10, 0.6 * bytesPerSecond());
}

TEST(Pace, SendsAFewTensOfKilobytesBeforeItKnowsTheLink) {
  const Pace pace;
  EXPECT_EQ(pace.room(), 64U * 1024);
  EXPECT_EQ(pace.piece(), 16U * 1024);
  EXPECT_EQ(pace.bytesPerSecond(), 0);
}

TEST(Pace, DoesNotBelieveThatMoreArrivedThanWasSent) {
  Pace pace;
  const Time now{1000s};
  pace.sent(1000, now);
  pace.acknowledged(1001, now + 1ms);
  EXPECT_EQ(pace.inFlight(), 1000U);
  pace.acknowledged(1000, now + 1ms);
  EXPECT_EQ(pace.inFlight(), 0U);
  pace.acknowledged(500, now + 1ms);
  EXPECT_EQ(pace.inFlight(), 0U);
}

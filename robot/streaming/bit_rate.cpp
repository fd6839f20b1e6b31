// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/bit_rate.h"

#include <algorithm>
#include <cmath>

#include "robot/camera/image_format.h"
#include "robot/streaming/picture_encoder.h"

namespace robot {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double kUnknown = 1e6;    // where nothing is known of the link
constexpr double kBeginning = 0.6;  // of what it carries
constexpr double kFall = 0.75;
// What is held up once was held up by a link that stood still, for long or for a moment; by a
// narrow one it is again soon.
constexpr double kFallOfStall = 0.95;
constexpr Seconds kLong{0.13};
constexpr Seconds kSoon{0.6};
constexpr Seconds kSoonAfterLong{0.2};
// And a round trip: only then is it seen what a fall did. One that is said to be longer is a queue.
constexpr Seconds kFallPause{0.15};
constexpr Seconds kMostRoundTrip{0.3};
// Growth a second: far below what the link carries, usually, and close to what was too much.
constexpr double kGrowthBelow = 1.3;
constexpr double kFarBelow = 0.6;
constexpr double kGrowth = 1.1;
constexpr double kGrowthClose = 1.04;
constexpr double kCloseFrom = 0.7;
constexpr double kCloseTo = 1.1;   // what is beyond that proves that there is more by now
constexpr Seconds kMostGrowth{1};  // at once, after a pause

double sizeRatio(int resolution) {
  return static_cast<double>(sizeOf(resolution).area()) / sizeOf(2).area();
}

// What part of the link the rate takes; nothing where the link is not known.
std::optional<double> shareOf(double rate, const LinkState& link) {
  if (link.bytesPerSecond <= 0) return std::nullopt;
  return rate / (8 * link.bytesPerSecond);
}

}  // namespace

int mostBitRate(int resolution) {
  return static_cast<int>(std::clamp(8e6 * sizeRatio(resolution), 1.5e6, 20e6));
}

int savingBitRate(int resolution) {
  return static_cast<int>(std::max(800e3 * std::pow(sizeRatio(resolution), 0.75), 150e3));
}

void BitRate::begin(const LinkState& link, int most) {
  fRate = link.bytesPerSecond > 0 ? kBeginning * 8 * link.bytesPerSecond : kUnknown;
  fIsHeldUp = false;
  fLimit = 0;
  fGrownAt.reset();
  limit(most);
}

void BitRate::due(const LinkState& link, int most, Time now) {
  const bool wasHeldUp = std::exchange(fIsHeldUp, !link.isIdle);
  if (fRate == 0) begin(link, most);
  if (fIsHeldUp && !wasHeldUp) fHeldUpAt = now;
  if (!fIsHeldUp && wasHeldUp) fall(link, now);
  if (!fIsHeldUp && !wasHeldUp) grow(link, now);
  fGrownAt = now;
  limit(most);
}

// At the end of what was held up, however long that was: nothing was encoded meanwhile.
void BitRate::fall(const LinkState& link, Time now) {
  const auto isAgain = [&](const std::optional<Time>& before, Seconds within) {
    return before && fHeldUpAt - *before < within;
  };
  const bool isLong = now - fHeldUpAt >= kLong;
  const bool isNarrow = isLong ? isAgain(fFreeAt, kSoonAfterLong) : isAgain(fBriefAt, kSoon);
  fFreeAt = now;
  if (!isLong) fBriefAt = now;
  if (now < fFallAfter) return;
  if (isNarrow) fLimit = fRate;
  fRate *= isNarrow ? kFall : kFallOfStall;
  fFallAfter = now + std::chrono::duration_cast<Time::duration>(
                         std::min<Seconds>(link.roundTrip, kMostRoundTrip) + kFallPause);
}

void BitRate::grow(const LinkState& link, Time now) {
  if (!fGrownAt) return;
  fRate *= std::pow(growthOf(link), std::min(Seconds(now - *fGrownAt), kMostGrowth).count());
}

double BitRate::growthOf(const LinkState& link) const {
  if (fRate > kCloseFrom * fLimit && fRate < kCloseTo * fLimit) return kGrowthClose;
  return shareOf(fRate, link).value_or(1) < kFarBelow ? kGrowthBelow : kGrowth;
}

void BitRate::limit(int most) {
  fRate = std::clamp(fRate, double{PictureEncoder::kMinBitRate}, static_cast<double>(most));
}

}  // namespace robot

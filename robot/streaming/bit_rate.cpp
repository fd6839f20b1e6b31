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
// Below this part of what the link carries it is not narrow, where something is held up.
constexpr double kNarrow = 0.6;
constexpr double kFall = 0.75;
constexpr double kFallOfStall = 0.9;
constexpr Seconds kFallPause{0.15};  // and a round trip: only then is it seen what a fall did
// Growth a second: far from the limit, on the way to it, and close to it.
constexpr double kGrowthBelow = 1.3;
constexpr double kGrowth = 1.1;
constexpr double kGrowthClose = 1.02;
constexpr double kClose = 0.8;         // to what the link carries
constexpr double kCloseToLimit = 0.7;  // to where it was too much; what is as far beyond is proof
constexpr Seconds kMostGrowth{1};      // at once, after a pause

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
  if (fIsHeldUp && !wasHeldUp && now >= fFallAfter) fall(link, now);
  if (!fIsHeldUp && !wasHeldUp) grow(link, now);
  fGrownAt = now;
  limit(most);
}

void BitRate::fall(const LinkState& link, Time now) {
  const bool isNarrow = shareOf(fRate, link).value_or(1) >= kNarrow;
  if (isNarrow) fLimit = fRate;
  fRate *= isNarrow ? kFall : kFallOfStall;
  fFallAfter = now + std::chrono::duration_cast<Time::duration>(link.roundTrip + kFallPause);
}

void BitRate::grow(const LinkState& link, Time now) {
  if (!fGrownAt) return;
  fRate *= std::pow(growthOf(link), std::min(Seconds(now - *fGrownAt), kMostGrowth).count());
}

double BitRate::growthOf(const LinkState& link) const {
  if (fRate > kCloseToLimit * fLimit && fRate * kCloseToLimit < fLimit) return kGrowthClose;
  const auto share = shareOf(fRate, link);
  if (!share) return kGrowth;
  return *share < kNarrow ? kGrowthBelow : *share < kClose ? kGrowth : kGrowthClose;
}

void BitRate::limit(int most) {
  fRate = std::clamp(fRate, double{PictureEncoder::kMinBitRate}, static_cast<double>(most));
}

}  // namespace robot

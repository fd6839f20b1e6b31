// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/shared_encoder.h"

#include <cstdlib>
#include <utility>

namespace robot {
namespace {

constexpr std::int64_t kSecond = 1000000;  // microseconds
// No frame is so much older than one that was encoded before, unless the clock was set.
constexpr std::int64_t kClockSet = kSecond;

}  // namespace

SharedEncoder::SharedEncoder(const EncoderSettings& settings,
                             std::shared_ptr<std::atomic<std::uint64_t>> encoded)
    : fSettings(settings),
      fEncoded(std::move(encoded)),
      fBitRate(settings.bitRate),
      fEncoder(settings),
      fEncoderRate(settings.bitRate) {
}

SharedEncoder::Reach SharedEncoder::reach(const std::shared_ptr<const Frame>& frame,
                                          std::optional<std::int64_t> known) {
  const zu::MutexLock guard(fMutex);
  const bool isBehind = !known || (*known < fNewest && !isKept(*known + 1));
  const auto next = [&]() ZU_REQUIRES(fMutex) {
    if (!isBehind) return *known + 1;
    return fNewestKey == fNewest ? fNewest : fNewest + 1;
  };
  if (!isNewsFor(*frame, next())) {
    if (isBehind) fWantsKey = true;
    if (!isOld(*frame)) encode(frame);
  }
  return {next(), fNewest};
}

std::optional<SharedPacket> SharedEncoder::packet(std::int64_t number) const {
  const zu::MutexLock guard(fMutex);
  if (!isKept(number)) return std::nullopt;
  return fPackets[fPackets.size() - 1 - static_cast<std::size_t>(fNewest - number)];
}

bool SharedEncoder::isKept(std::int64_t number) const {
  return number <= fNewest && fNewest - number < static_cast<std::int64_t>(fPackets.size());
}

// Whether the packets from `first` on bring a picture of about the frame's time. Some subscribers
// see a camera's picture later than others, and of a camera that is quicker than they wish they may
// choose different ones.
bool SharedEncoder::isNewsFor(const Frame& frame, std::int64_t first) const {
  if (first < 1 || first > fNewest || !fFrame) return false;
  const std::int64_t later = frame.time() - fFrame->time();
  return later < kSecond * 3 / 4 / fSettings.fps && later > -kClockSet;
}

// Others have a newer one already.
bool SharedEncoder::isOld(const Frame& frame) const {
  if (!fFrame) return false;
  const std::int64_t later = frame.time() - fFrame->time();
  return later <= 0 && later > -kClockSet;
}

void SharedEncoder::encode(const std::shared_ptr<const Frame>& frame) {
  const int bitRate = fBitRate;
  if (std::exchange(fEncoderRate, bitRate) != bitRate) fEncoder.setBitRate(bitRate);
  EncodedPicture made = fEncoder.encode(frame->pixels(fSettings.format), fWantsKey);
  fWantsKey = false;
  ++*fEncoded;
  ++fNewest;
  if (made.isKey) fNewestKey = fNewest;
  fFrame = frame;
  fPackets.push_back({std::move(made.bytes), made.isKey, bitRate, fSettings.format, frame->time(),
                      frame->camera()});
  if (fPackets.size() > kKept) fPackets.pop_front();
}

}  // namespace robot

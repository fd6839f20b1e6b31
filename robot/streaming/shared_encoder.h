// SPDX-License-Identifier: Apache-2.0
// Encodes a camera's pictures once for several subscribers.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

#include "robot/camera/frame.h"
#include "robot/streaming/picture_encoder.h"
#include "zu/mutex.h"

namespace robot {

// What was made of a picture.
struct SharedPacket {
  Ky::KyBinary bytes;
  bool isKey = false;
  int bitRate = 0;  // bits a second, of the encoder then
  ImageFormat format;
  std::int64_t time = 0;  // of the frame
  int camera = 0;         // of the frame
};

// Its packets are numbered from 1 on, and each but a key frame needs the one before. The last ones
// are kept for those who are a little behind. Thread-safe.
class SharedEncoder {
 public:
  // The numbers of packets that somebody is to get; none when `first` is beyond `last`.
  struct Reach {
    std::int64_t first = 1;
    std::int64_t last = 0;
  };

  // Throws KyError as PictureEncoder does. `encoded` counts the pictures.
  SharedEncoder(const EncoderSettings& settings,
                std::shared_ptr<std::atomic<std::uint64_t>> encoded);

  // From the next picture on.
  void setBitRate(int bitsPerSecond) { fBitRate = bitsPerSecond; }
  // For somebody whose turn it is and who has got the packets up to `known`. Encodes the frame,
  // unless there is a packet for him that is about as new. Without a number, and when he is too far
  // behind, he gets nothing before a key frame, which is made as soon as possible.
  Reach reach(const std::shared_ptr<const Frame>& frame, std::optional<std::int64_t> known);
  // Nothing when it is not kept any more.
  std::optional<SharedPacket> packet(std::int64_t number) const;

 private:
  static constexpr std::size_t kKept = 30;

  bool isKept(std::int64_t number) const ZU_REQUIRES(fMutex);
  bool isNewsFor(const Frame& frame, std::int64_t first) const ZU_REQUIRES(fMutex);
  bool isOld(const Frame& frame) const ZU_REQUIRES(fMutex);
  void encode(const std::shared_ptr<const Frame>& frame) ZU_REQUIRES(fMutex);

  const EncoderSettings fSettings;
  const std::shared_ptr<std::atomic<std::uint64_t>> fEncoded;
  std::atomic<int> fBitRate;

  mutable zu::Mutex fMutex;
  PictureEncoder fEncoder ZU_GUARDED_BY(fMutex);
  int fEncoderRate ZU_GUARDED_BY(fMutex);
  bool fWantsKey ZU_GUARDED_BY(fMutex) = false;
  std::int64_t fNewest ZU_GUARDED_BY(fMutex) = 0;  // number
  std::int64_t fNewestKey ZU_GUARDED_BY(fMutex) = 0;
  std::deque<SharedPacket> fPackets ZU_GUARDED_BY(fMutex);    // up to the newest
  std::shared_ptr<const Frame> fFrame ZU_GUARDED_BY(fMutex);  // of the newest
};

}  // namespace robot

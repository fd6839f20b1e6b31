// SPDX-License-Identifier: Apache-2.0
// One subscriber's pictures as H.264.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "robot/streaming/shared_encoders.h"

namespace robot {

// Thread-bound.
class EncodedPictures {
 public:
  struct Packet {
    SharedPacket made;
    // 1, 2, ...: each packet but a key frame needs the one before.
    std::int64_t number = 0;
  };

  explicit EncodedPictures(std::shared_ptr<SharedEncoders> encoders);
  ~EncodedPictures();
  EncodedPictures(const EncodedPictures&) = delete;
  EncodedPictures& operator=(const EncodedPictures&) = delete;

  // It is this frame's turn: there may be packets then. Throws KyError when it can't be encoded.
  void take(const std::shared_ptr<const Frame>& frame, const ImageFormat& format, int fps,
            int bitRate);
  // The packets that are to be sent, one after the other.
  std::optional<Packet> next();
  bool hasNext() const { return fReach.first <= fReach.last; }
  // What was sent last did not arrive: goes on with a key frame.
  void restart();
  // No more pictures for a while.
  void rest();

 private:
  const std::shared_ptr<SharedEncoders> fEncoders;
  std::shared_ptr<SharedEncoder> fEncoder;
  std::optional<std::int64_t> fKnown;  // number of the encoder's
  SharedEncoder::Reach fReach;
  std::int64_t fNumber = 0;
};

}  // namespace robot

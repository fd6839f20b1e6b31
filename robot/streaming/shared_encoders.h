// SPDX-License-Identifier: Apache-2.0
// Which subscribers have an encoder in common.
#pragma once

#include <compare>
#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "robot/streaming/shared_encoder.h"
#include "zu/mutex.h"

namespace robot {

// Those have one in common who want the same of the same camera and whose links carry about as
// much: no more than twice what the others' do. Its bit rate is the least that one of them wishes.
// Who is alone sets it as he likes. Thread-safe.
class SharedEncoders {
 public:
  struct Kind {
    int camera = 0;
    ImageFormat format;
    int fps = kMaxFps;
    bool operator==(const Kind&) const = default;
  };
  using Member = const void*;  // whatever tells one from the other

  // `encoder`: libavcodec's name of the encoder that is used.
  explicit SharedEncoders(std::string encoder = EncoderSettings().name)
      : fEncoder(std::move(encoder)) {}

  // The member's encoder: the one that it has where that still fits, else another's or a new one.
  // Throws KyError as PictureEncoder does.
  std::shared_ptr<SharedEncoder> join(Member member, const Kind& kind, int bitRate);
  void leave(Member member);

  // Pictures encoded so far, and encoders that there are.
  std::uint64_t encoded() const { return *fEncoded; }
  std::size_t encoders() const;

 private:
  struct Group {
    Kind kind;
    int octave = 0;                // of the bit rate
    std::map<Member, int> wishes;  // bits a second
    std::shared_ptr<SharedEncoder> encoder;
  };
  using Place = std::list<Group>::iterator;

  Place placeOf(Member member) ZU_REQUIRES(fMutex);
  Place placeFor(const Kind& kind, int octave) ZU_REQUIRES(fMutex);
  Place stay(Place own, const Kind& kind, int bitRate) ZU_REQUIRES(fMutex);
  Place found(const Kind& kind, int bitRate) ZU_REQUIRES(fMutex);
  void remove(Place place, Member member) ZU_REQUIRES(fMutex);

  const std::string fEncoder;
  const std::shared_ptr<std::atomic<std::uint64_t>> fEncoded =
      std::make_shared<std::atomic<std::uint64_t>>(0);
  mutable zu::Mutex fMutex;
  std::list<Group> fGroups ZU_GUARDED_BY(fMutex);
};

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/shared_encoders.h"

#include <algorithm>
#include <bit>

namespace robot {
namespace {

// 20 for 1048576 to 2097151 bits a second.
int octaveOf(int bitRate) {
  return std::bit_width(static_cast<unsigned>(bitRate)) - 1;
}

// A rate that swings around the limit of two octaves does not move each time.
bool fits(int bitRate, int octave) {
  const int least = 1 << octave;
  return bitRate >= least && bitRate < 2 * least + least / 2;
}

int leastOf(const std::map<SharedEncoders::Member, int>& wishes) {
  return std::min_element(wishes.begin(), wishes.end(),
                          [](const auto& a, const auto& b) { return a.second < b.second; })
      ->second;
}

}  // namespace

std::shared_ptr<SharedEncoder> SharedEncoders::join(Member member, const Kind& kind, int bitRate) {
  bitRate = std::clamp(bitRate, PictureEncoder::kMinBitRate, PictureEncoder::kMaxBitRate);
  const zu::MutexLock guard(fMutex);
  const Place own = placeOf(member);
  Place place = stay(own, kind, bitRate);
  if (place == fGroups.end()) {
    if (own != fGroups.end()) remove(own, member);
    place = placeFor(kind, octaveOf(bitRate));
  }
  if (place == fGroups.end()) place = found(kind, bitRate);
  place->wishes[member] = bitRate;
  place->encoder->setBitRate(leastOf(place->wishes));
  return place->encoder;
}

void SharedEncoders::leave(Member member) {
  const zu::MutexLock guard(fMutex);
  if (const Place place = placeOf(member); place != fGroups.end()) remove(place, member);
}

std::size_t SharedEncoders::encoders() const {
  const zu::MutexLock guard(fMutex);
  return fGroups.size();
}

SharedEncoders::Place SharedEncoders::placeOf(Member member) {
  return std::find_if(fGroups.begin(), fGroups.end(),
                      [&](const Group& group) { return group.wishes.count(member) != 0; });
}

SharedEncoders::Place SharedEncoders::placeFor(const Kind& kind, int octave) {
  return std::find_if(fGroups.begin(), fGroups.end(), [&](const Group& group) {
    return group.kind == kind && group.octave == octave;
  });
}

// The end when the member's own is not for him any more. Who is alone takes it along to another
// octave, unless there is one already.
SharedEncoders::Place SharedEncoders::stay(Place own, const Kind& kind, int bitRate) {
  if (own == fGroups.end() || own->kind != kind) return fGroups.end();
  if (fits(bitRate, own->octave)) return own;
  const int octave = octaveOf(bitRate);
  if (own->wishes.size() > 1 || placeFor(kind, octave) != fGroups.end()) return fGroups.end();
  own->octave = octave;
  return own;
}

SharedEncoders::Place SharedEncoders::found(const Kind& kind, int bitRate) {
  EncoderSettings settings;
  settings.format = kind.format;
  settings.fps = kind.fps;
  settings.bitRate = bitRate;
  settings.name = fEncoder;
  auto encoder = std::make_shared<SharedEncoder>(settings, fEncoded);
  return fGroups.insert(fGroups.end(), {kind, octaveOf(bitRate), {}, std::move(encoder)});
}

void SharedEncoders::remove(Place place, Member member) {
  place->wishes.erase(member);
  if (place->wishes.empty())
    fGroups.erase(place);
  else
    place->encoder->setBitRate(leastOf(place->wishes));
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/encoded_pictures.h"

#include <utility>

namespace robot {

EncodedPictures::EncodedPictures(std::shared_ptr<SharedEncoders> encoders)
    : fEncoders(std::move(encoders)) {
}

EncodedPictures::~EncodedPictures() {
  fEncoders->leave(this);
}

void EncodedPictures::take(const std::shared_ptr<const Frame>& frame, const ImageFormat& format,
                           int fps, int bitRate) {
  auto encoder = fEncoders->join(this, {frame->camera(), format, fps}, bitRate);
  if (std::exchange(fEncoder, encoder) != encoder) restart();
  fReach = fEncoder->reach(frame, fKnown);
}

std::optional<EncodedPictures::Packet> EncodedPictures::next() {
  if (!hasNext()) return std::nullopt;
  auto made = fEncoder->packet(fReach.first);
  if (!made) {
    restart();
    return std::nullopt;
  }
  fKnown = fReach.first++;
  return Packet{std::move(*made), ++fNumber};
}

void EncodedPictures::restart() {
  fKnown.reset();
  fReach = {};
}

void EncodedPictures::rest() {
  if (!fEncoder) return;
  restart();
  fEncoder.reset();
  fEncoders->leave(this);
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "transport/outbox.h"

#include <algorithm>
#include <utility>

namespace Ky {
namespace {

// Large messages that wait for a slow link; then it is no use to keep more.
constexpr std::size_t kMostWaiting = 64;

}  // namespace

bool Outbox::add(Parts message, Time now) {
  const std::size_t bytes = message.bytes();
  if (bytes <= kSmall || !fIsPaced) return fSend(message);
  if (fWaiting.size() >= kMostWaiting) return false;
  fWaitingBytes += bytes;
  fWaiting.push_back({std::move(message), {}});
  pump(now);
  return true;
}

void Outbox::addLater(std::shared_ptr<Later> later, Time now) {
  fWaiting.push_back({{}, std::move(later)});
  pump(now);
}

void Outbox::acknowledged(std::uint64_t total, Time now) {
  fPace.acknowledged(total, now);
  pump(now);
}

void Outbox::pump(Time now) {
  fPace.giveUpLost(now);
  if (fCurrentLater && !fCurrentLater->isWanted()) endCurrent();
  while (!fRests && (fCurrent || begin()) && sendSome(now)) {
  }
}

// False when nothing waits.
bool Outbox::begin() {
  while (!fWaiting.empty()) {
    Waiting waiting = std::move(fWaiting.front());
    fWaiting.pop_front();
    if (waiting.later) {
      std::optional<Parts> made = waiting.later->make();
      if (!made) continue;
      fCurrent.emplace(std::move(*made));
      fCurrentLater = std::move(waiting.later);
    } else {
      fWaitingBytes -= waiting.message.bytes();
      fCurrent.emplace(std::move(waiting.message));
    }
    return true;
  }
  return false;
}

// The other end forgets what of it has gone out when the next begins.
void Outbox::endCurrent() {
  fCurrent.reset();
  if (fCurrentLater) std::exchange(fCurrentLater, nullptr)->over();
}

// False when there is no room now.
bool Outbox::sendSome(Time now) {
  const std::size_t length = fPace.piece();
  // What is longer than all the room goes while nothing else is on its way.
  if (std::min(length, fCurrent->left()) > fPace.room() && fPace.inFlight() > 0) {
    fPace.waits();
    return false;
  }
  const Parts piece = fCurrent->piece(length, fPace.sentBytes());
  if (!fSend(piece)) return false;
  fCurrent->sent(piece);
  if (fCurrent->left() == 0) endCurrent();
  fPace.sent(bytesOf(piece.attachments), now);
  return true;
}

}  // namespace Ky

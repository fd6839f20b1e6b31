// SPDX-License-Identifier: Apache-2.0
// What waits to go out over one connection.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "transport/pace.h"
#include "wire/pieces.h"

namespace Ky {

// Small messages go at once. Large ones, and those of streams whatever their size, go one after the
// other, no faster than the link carries them and in pieces that it carries in a moment, so that a
// small one never waits for long: a call, an answer or a sign of life is not behind pictures. Where
// the link is fast the pieces are larger than any message, which then goes in one.
//
// The other end acknowledges each piece as it receives it. Thread-bound.
class Outbox {
 public:
  using Time = Pace::Time;
  // Hands a message to the socket; false when it can't take it now.
  using Send = std::function<bool(const Parts&)>;
  // A large message that is made when its turn has come.
  class Later {
   public:
    virtual ~Later() = default;
    // Nothing when there is nothing to send any more.
    virtual std::optional<Parts> make() = 0;
    // Asked before each piece: what is not wanted any more is given up.
    virtual bool isWanted() const = 0;
    // It has gone out, or was given up.
    virtual void over() = 0;
  };

  // `isPaced`: false for another end that acknowledges nothing; then everything goes at once.
  explicit Outbox(Send send, bool isPaced = true) : fSend(std::move(send)), fIsPaced(isPaced) {}

  // False when it was dropped: the socket can't take a small one, or too many large ones wait.
  bool add(Parts message, Time now);
  void addLater(std::shared_ptr<Later> later, Time now);
  // See Pace::acknowledged().
  void acknowledged(std::uint64_t total, Time now);
  // Large messages wait while the other end gives no sign of life.
  void rest(bool on) { fRests = on; }
  // Sends what there is room for; to be called from time to time, in case the socket was full or
  // something was lost.
  void pump(Time now);

  // Bytes of messages that wait, but for those that are yet to be made.
  std::size_t waitingBytes() const { return fWaitingBytes + (fCurrent ? fCurrent->left() : 0); }
  const Pace& pace() const { return fPace; }

 private:
  static constexpr std::size_t kSmall = 8 * 1024;

  struct Waiting {
    Parts message;
    std::shared_ptr<Later> later;  // instead of the message
  };

  bool begin();
  void endCurrent();
  bool sendSome(Time now);

  const Send fSend;
  const bool fIsPaced;
  Pace fPace;
  bool fRests = false;
  std::deque<Waiting> fWaiting;
  std::size_t fWaitingBytes = 0;
  std::optional<Cutter> fCurrent;
  std::shared_ptr<Later> fCurrentLater;  // of which it is; null for a message that was there
};

}  // namespace Ky

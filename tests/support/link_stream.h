// SPDX-License-Identifier: Apache-2.0
// One way of one connection that crosses a Link.
#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include "support/damaged_bytes.h"

// Takes bytes from one socket when the link has room for them, and gives them to another when their
// time has come. The end of the stream crosses like a byte. Thread-bound; the sockets are not its
// own, and don't block.
class LinkStream {
 public:
  using Clock = std::chrono::steady_clock;
  using Time = Clock::time_point;

  LinkStream(int from, int to, const LinkSettings& settings, Time now);

  // Holds for what is under way, too.
  void apply(const LinkSettings& settings, Time now);
  // What is under way is lost, and so is all that follows; the receiver sees the stream's end.
  void cut();

  // Whether it would read, or write, if the sockets could.
  bool wantsToRead(Time now) const;
  bool wantsToWrite(Time now) const;
  // When one of the two becomes true by itself; nothing when it never does.
  std::optional<Time> nextTurn(Time now) const;
  // False when the connection is broken.
  bool read(Time now);
  bool write(Time now);

  // The end has crossed.
  bool isOver() const { return fEndRead && fEndWritten; }

 private:
  struct Chunk {
    std::string bytes;  // empty: the end
    Time due;
  };

  std::size_t readSize() const;
  Time departure(std::size_t size, Time now) const;
  Time afterStall(Time time) const;
  void queue(std::string bytes, std::size_t size, Time now);

  const int fFrom;
  const int fTo;
  LinkSettings fSettings;
  Time fSettingsSince;
  DamagedBytes fDamage;
  std::deque<Chunk> fQueue;  // in the order of their times
  std::size_t fQueued = 0;   // bytes
  std::size_t fWritten = 0;  // of the first chunk
  Time fBusyUntil;           // everything that was read has left by then
  bool fCut = false;
  bool fEndRead = false;
  bool fEndWritten = false;
};

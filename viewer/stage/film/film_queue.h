// SPDX-License-Identifier: Apache-2.0
// The pictures that wait to be put into a film.
#pragma once

#include <QImage>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

#include "zu/mutex.h"

struct FilmPicture {
  QImage image;
  std::int64_t microseconds = 0;  // when it was shown
};

// Bounded in bytes: what finds no room is dropped, and counted. Thread-safe.
class FilmQueue {
 public:
  using Clock = std::chrono::steady_clock;

  // One picture has room always.
  explicit FilmQueue(std::size_t mostBytes) : fMostBytes(mostBytes) {}

  // Never waits. After an end it does nothing.
  void add(const FilmPicture& picture);
  // The oldest; waits for it. Nothing once the queue has ended and is empty.
  std::optional<FilmPicture> take();

  // Nothing more is added. What waits can still be taken, until `end`; the rest is dropped then.
  void close(Clock::time_point end = Clock::time_point::max());

  // Whether more than half of the room is taken.
  bool isFilling() const;
  int dropped() const;

 private:
  static std::size_t bytesOf(const FilmPicture& picture);
  void dropAll() ZU_REQUIRES(fMutex);

  const std::size_t fMostBytes;
  mutable zu::Mutex fMutex;
  zu::ConditionVariable fChanged;
  std::deque<FilmPicture> fPictures ZU_GUARDED_BY(fMutex);
  std::size_t fBytes ZU_GUARDED_BY(fMutex) = 0;
  int fDropped ZU_GUARDED_BY(fMutex) = 0;
  std::optional<Clock::time_point> fEnd ZU_GUARDED_BY(fMutex);  // once it was closed
};

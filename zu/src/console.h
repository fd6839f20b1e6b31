// SPDX-License-Identifier: Apache-2.0
// The log on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "zu/log.h"

namespace spdlog::sinks {
class sink;
}

namespace zu::log {

// Writes lines; those that repeat the one before are counted instead, and so are those of a pair
// that was written twice in a row and goes on. The count is told when another line comes, and every
// ten seconds while they go on. Thread-bound.
class Console {
 public:
  using Time = std::chrono::steady_clock::time_point;

  Console();

  void write(const Record& record, Time now);
  // Tells what was counted since it was last told.
  void tellRepeats();

 private:
  struct Shown {
    Record record;
    std::uint64_t repeats = 0;  // that were not told yet
  };

  Shown* repeatedBy(const Record& record);
  void print(const Record& record, const std::string& text);

  const std::shared_ptr<spdlog::sinks::sink> fSink;
  std::deque<Shown> fShown;  // the newest lines, as many as show a pair twice
  Time fTold;                // when anything was last written
};

}  // namespace zu::log

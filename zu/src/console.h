// SPDX-License-Identifier: Apache-2.0
// The log on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "zu/log.h"

namespace spdlog::sinks {
class sink;
}

namespace zu::log {

// Writes lines; those that repeat the one before are counted instead, and the count is told when
// another line comes, and every ten seconds while they go on. Thread-bound.
class Console {
 public:
  using Time = std::chrono::steady_clock::time_point;

  Console();

  void write(const Record& record, Time now);
  // Tells what was counted since it was last told.
  void tellRepeats();

 private:
  bool repeatsLast(const Record& record) const;
  void print(const Record& record, const std::string& text);

  const std::shared_ptr<spdlog::sinks::sink> fSink;
  std::optional<Record> fLast;
  std::uint64_t fRepeats = 0;
  Time fTold;  // when anything was last written
};

}  // namespace zu::log

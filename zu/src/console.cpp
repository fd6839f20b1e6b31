// SPDX-License-Identifier: Apache-2.0
#include "console.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include <algorithm>
#include <utility>

namespace zu::log {
namespace {

constexpr std::chrono::seconds kTellEvery{10};
constexpr std::size_t kPairTwice = 4;  // lines

bool isSame(const Record& one, const Record& other) {
  return one.level == other.level && one.category == other.category &&
         one.function == other.function && one.text == other.text;
}

spdlog::level::level_enum spdlogLevel(Level level) {
  switch (level) {
    case Level::silent:
      return spdlog::level::off;
    case Level::fatal:
      return spdlog::level::critical;
    case Level::error:
      return spdlog::level::err;
    case Level::warning:
      return spdlog::level::warn;
    case Level::info:
      return spdlog::level::info;
    case Level::verbose:
      return spdlog::level::debug;
    case Level::debug:
      return spdlog::level::trace;
  }
  return spdlog::level::info;
}

}  // namespace

Console::Console() : fSink(std::make_shared<spdlog::sinks::stderr_color_sink_st>()) {
  fSink->set_pattern("%Y-%m-%d %H:%M:%S.%e %^%-7!l%$ %v");
}

void Console::write(const Record& record, Time now) {
  if (Shown* line = repeatedBy(record)) {
    ++line->repeats;
    line->record.time = record.time;
    if (now - fTold < kTellEvery) return;
    tellRepeats();
  } else {
    tellRepeats();
    print(record, record.text);
    fShown.push_back({record});
    if (fShown.size() > kPairTwice) fShown.pop_front();
  }
  fTold = now;
}

void Console::tellRepeats() {
  if (fShown.empty()) return;
  const std::uint64_t last = std::exchange(fShown.back().repeats, 0);
  const std::uint64_t other =
      fShown.size() < kPairTwice ? 0 : std::exchange(fShown[kPairTwice - 2].repeats, 0);
  const std::uint64_t count = std::max(last, other);
  if (count == 0) return;
  const std::string what = other == 0 ? "the line" : "the two lines";
  const std::string times = count == 1 ? "once" : std::to_string(count) + " times";
  print(fShown.back().record, "(" + what + " before came " + times + " more)");
}

// Null when it is news.
Console::Shown* Console::repeatedBy(const Record& record) {
  if (fShown.empty()) return nullptr;
  if (isSame(fShown.back().record, record)) return &fShown.back();
  if (fShown.size() < kPairTwice || !isSame(fShown[2].record, record)) return nullptr;
  const bool isPair =
      isSame(fShown[0].record, fShown[2].record) && isSame(fShown[1].record, fShown[3].record);
  return isPair ? &fShown[2] : nullptr;
}

void Console::print(const Record& record, const std::string& text) {
  const std::string line = record.category + "." + record.function + ": " + text;
  fSink->log(spdlog::details::log_msg(record.time, spdlog::source_loc{}, "",
                                      spdlogLevel(record.level), line));
  fSink->flush();
}

}  // namespace zu::log

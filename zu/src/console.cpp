// SPDX-License-Identifier: Apache-2.0
#include "console.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include <utility>

namespace zu::log {
namespace {

constexpr std::chrono::seconds kTellEvery{10};

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
  if (repeatsLast(record)) {
    ++fRepeats;
    fLast->time = record.time;
    if (now - fTold < kTellEvery) return;
    tellRepeats();
  } else {
    tellRepeats();
    print(record, record.text);
    fLast = record;
  }
  fTold = now;
}

void Console::tellRepeats() {
  const std::uint64_t count = std::exchange(fRepeats, 0);
  if (count == 0) return;
  const std::string times = count == 1 ? "once" : std::to_string(count) + " times";
  print(*fLast, "(the line before came " + times + " more)");
}

bool Console::repeatsLast(const Record& record) const {
  return fLast && fLast->level == record.level && fLast->category == record.category &&
         fLast->function == record.function && fLast->text == record.text;
}

void Console::print(const Record& record, const std::string& text) {
  const std::string line = record.category + "." + record.function + ": " + text;
  fSink->log(spdlog::details::log_msg(record.time, spdlog::source_loc{}, "",
                                      spdlogLevel(record.level), line));
  fSink->flush();
}

}  // namespace zu::log

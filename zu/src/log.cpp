// SPDX-License-Identifier: Apache-2.0
#include "zu/log.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include <algorithm>
#include <array>
#include <vector>

#include "zu/mutex.h"

namespace zu::log {
namespace {

// The one place where lines of all threads meet. Leaked on purpose: threads may still log while
// static objects are being destroyed.
struct Hub {
  Mutex mutex;
  std::vector<std::shared_ptr<Sink>> sinks ZU_GUARDED_BY(mutex);
  Level consoleLevel ZU_GUARDED_BY(mutex) = Level::info;
  std::shared_ptr<spdlog::sinks::sink> console ZU_GUARDED_BY(mutex) =
      std::make_shared<spdlog::sinks::stderr_color_sink_st>();

  Hub() { console->set_pattern("%Y-%m-%d %H:%M:%S.%e %^%-7!l%$ %v"); }
};

Hub& hub() {
  static Hub* instance = new Hub;
  return *instance;
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

void writeToConsole(Hub& to, const Record& record) ZU_REQUIRES(to.mutex) {
  const std::string line = record.category + "." + record.function + ": " + record.text;
  spdlog::details::log_msg message(record.time, spdlog::source_loc{}, "", spdlogLevel(record.level),
                                   line);
  to.console->log(message);
  to.console->flush();
}

}  // namespace

const char* name(Level level) {
  static constexpr std::array<const char*, 7> kNames = {"silent", "fatal",   "error", "warning",
                                                        "info",   "verbose", "debug"};
  const auto index = static_cast<std::size_t>(level);
  return index < kNames.size() ? kNames[index] : "unknown";
}

Listener::Listener(Sink sink) : fSink(std::make_shared<Sink>(std::move(sink))) {
  Hub& to = hub();
  const MutexLock guard(to.mutex);
  to.sinks.push_back(fSink);
}

Listener::~Listener() {
  if (!fSink) return;
  Hub& to = hub();
  const MutexLock guard(to.mutex);
  std::erase(to.sinks, fSink);
}

Listener::Listener(Listener&& other) noexcept : fSink(std::move(other.fSink)) {
}

Listener& Listener::operator=(Listener&& other) noexcept {
  std::swap(fSink, other.fSink);
  return *this;
}

void write(Level level, const std::string& category, const std::string& function,
           const std::string& text) {
  const Record record{level, category, function, text, std::chrono::system_clock::now()};
  Hub& to = hub();
  const MutexLock guard(to.mutex);
  if (level <= to.consoleLevel && level != Level::silent) writeToConsole(to, record);
  for (const auto& sink : to.sinks) (*sink)(record);
}

void setConsoleLevel(Level level) {
  Hub& to = hub();
  const MutexLock guard(to.mutex);
  to.consoleLevel = level;
}

Stream::Stream(Level level, std::string category, std::string function)
    : fLevel(level), fCategory(std::move(category)), fFunction(std::move(function)) {
}

Stream::~Stream() {
  write(fLevel, fCategory, fFunction, fText.str());
}

}  // namespace zu::log

// SPDX-License-Identifier: Apache-2.0
#include "zu/log.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "console.h"
#include "zu/mutex.h"

namespace zu::log {
namespace {

// The one place where lines of all threads meet. Leaked on purpose: threads may still log while
// static objects are being destroyed.
struct Hub {
  Mutex mutex;
  std::vector<std::shared_ptr<Sink>> sinks ZU_GUARDED_BY(mutex);
  Level consoleLevel ZU_GUARDED_BY(mutex) = Level::info;
  Console console ZU_GUARDED_BY(mutex);
};

void tellRepeatsAtExit();

Hub* makeHub() {
  std::atexit(tellRepeatsAtExit);
  return new Hub;
}

Hub& hub() {
  static Hub* instance = makeHub();
  return *instance;
}

// Whoever reads the end of a program's log must not miss how often its last line came.
void tellRepeatsAtExit() {
  Hub& to = hub();
  const MutexLock guard(to.mutex);
  to.console.tellRepeats();
}

}  // namespace

namespace {

thread_local const Subject* innermost = nullptr;

}  // namespace

Subject::Subject(std::string name) : fName(std::move(name)), fOuter(innermost) {
  innermost = this;
}

Subject::~Subject() {
  innermost = fOuter;
}

std::string currentSubject() {
  return innermost != nullptr ? innermost->fName : std::string();
}

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
  const Record record{level,           category, function, text, std::chrono::system_clock::now(),
                      currentSubject()};
  Hub& to = hub();
  const MutexLock guard(to.mutex);
  if (level <= to.consoleLevel && level != Level::silent)
    to.console.write(record, std::chrono::steady_clock::now());
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

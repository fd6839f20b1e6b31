// SPDX-License-Identifier: Apache-2.0
// The log of everything that runs: one line is a level, a category, the function that wrote it and
// a text. Lines go to standard error, which counts those that repeat the one before instead of
// writing them, and to every sink that listens, which hears each.
//
//   zu::log::error("periscope", "getNext") << error.what();
//
// All functions of this header are thread-safe.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

namespace zu::log {

// Lower is more severe. The numbers are part of the robots' log format.
enum class Level {
  silent = 0,
  fatal = 1,
  error = 2,
  warning = 3,
  info = 4,
  verbose = 5,
  debug = 6
};

// "error", "warning", ... as printed in a line.
const char* name(Level level);

// One written line. Immutable once it reaches a sink.
struct Record {
  Level level = Level::info;
  std::string category;
  std::string function;
  std::string text;
  std::chrono::system_clock::time_point time;
  std::string subject{};  // what it is about, where the text doesn't say; see Subject
};

// Called for every record, on the thread that wrote it, one record at a time. A sink must not
// block for long and must not log.
using Sink = std::function<void(const Record&)>;

// Keeps a sink listening for as long as it lives. After the destructor returned, the sink is not
// running and will not be called again.
class Listener {
 public:
  Listener() = default;
  explicit Listener(Sink sink);
  ~Listener();
  Listener(Listener&& other) noexcept;
  Listener& operator=(Listener&& other) noexcept;

 private:
  std::shared_ptr<Sink> fSink;
};

// Says what the lines are about that this thread writes while it lives, such as the address of the
// one of several robots; the innermost counts. Thread-bound.
class Subject {
 public:
  explicit Subject(std::string name);
  ~Subject();
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

 private:
  friend std::string currentSubject();

  const std::string fName;
  const Subject* const fOuter;
};

// Of the calling thread; empty outside of every Subject.
std::string currentSubject();

// Writes one line.
void write(Level level, const std::string& category, const std::string& function,
           const std::string& text);

// The least severe level that reaches standard error; sinks hear everything. Default: info.
void setConsoleLevel(Level level);

// Collects one line and writes it when it goes out of scope.
class Stream {
 public:
  Stream(Level level, std::string category, std::string function);
  ~Stream();
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  template <class T>
  Stream& operator<<(const T& value) {
    fText << value;
    return *this;
  }

 private:
  Level fLevel;
  std::string fCategory;
  std::string fFunction;
  std::ostringstream fText;
};

inline Stream error(std::string category, std::string function) {
  return {Level::error, std::move(category), std::move(function)};
}
inline Stream warning(std::string category, std::string function) {
  return {Level::warning, std::move(category), std::move(function)};
}
inline Stream info(std::string category, std::string function) {
  return {Level::info, std::move(category), std::move(function)};
}
inline Stream debug(std::string category, std::string function) {
  return {Level::debug, std::move(category), std::move(function)};
}

}  // namespace zu::log

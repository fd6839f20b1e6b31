// SPDX-License-Identifier: Apache-2.0
// A program that a test runs: its lines, its signals, its end.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// Starts a program, keeps everything that it writes, and kills it at the end of the test at the
// latest, even when the test itself is killed. Thread-safe.
//
//   Process robot(KYROBOT, {"--port", "0"});
//   const auto line = robot.waitForLine("listening on ");
//   robot.signal(SIGINT);
//   EXPECT_EQ(robot.waitForExit(), 0);
class Process {
 public:
  // The limits are only there so that a broken program fails instead of hanging.
  static constexpr std::chrono::seconds kLimit{20};
  using Environment = std::map<std::string, std::string>;

  // `environment` is added to that of the test. Throws std::runtime_error when the program can't be
  // started.
  Process(const std::string& program, const std::vector<std::string>& arguments,
          const Environment& environment = {});
  // Kills it, and what it has started, and waits for their end.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  pid_t pid() const { return fPid; }
  // Nothing when it has ended already.
  void signal(int number) const;

  // The first line of standard output (or standard error) that contains `text`, written already or
  // still to come; nothing when the program ends, or the limit comes, before that.
  std::optional<std::string> waitForLine(const std::string& text,
                                         std::chrono::milliseconds limit = kLimit);
  std::optional<std::string> waitForErrorLine(const std::string& text,
                                              std::chrono::milliseconds limit = kLimit);
  // Everything written so far; after waitForExit() everything.
  std::string output() const;
  std::string errors() const;

  // The exit code, or minus the number of the signal that ended it; nothing when it still runs at
  // the limit.
  std::optional<int> waitForExit(std::chrono::milliseconds limit = kLimit);

 private:
  struct Stream {
    int fd = -1;
    std::string text;
    bool ended = false;
  };

  void collect();
  std::optional<std::string> waitForLineOf(const Stream& stream, const std::string& text,
                                           std::chrono::milliseconds limit);

  pid_t fPid = -1;
  mutable std::mutex fMutex;
  std::condition_variable fChanged;
  Stream fOutput;  // the texts and the rest are guarded by fMutex
  Stream fErrors;
  std::optional<int> fExitCode;  // set once the process is gone and all its text is here
  std::thread fCollector;
};

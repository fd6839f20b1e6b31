// SPDX-License-Identifier: Apache-2.0
// The call thread of one module.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <thread>

#include "zu/mutex.h"

namespace Ky {

// Runs calls one after the other. Thread-safe.
class CallQueue {
 public:
  static constexpr std::size_t kMaxWaiting = 1024;

  struct Job {
    std::function<void()> run;
    // Instead of run(), when the queue stops first.
    std::function<void()> cancel;
    // Not run any more after this: whoever asked has given up.
    std::chrono::steady_clock::time_point deadline;
  };

  CallQueue();
  ~CallQueue();
  CallQueue(const CallQueue&) = delete;
  CallQueue& operator=(const CallQueue&) = delete;

  enum class Pushed { Yes, Full, Stopped };
  Pushed push(Job job);
  bool isCurrentThread() const;
  // Waits for the running job and cancels the others. Idempotent; not from a job.
  void stop();

 private:
  void run();

  zu::Mutex fMutex;
  zu::ConditionVariable fChanged;
  std::deque<Job> fJobs ZU_GUARDED_BY(fMutex);
  bool fStopping ZU_GUARDED_BY(fMutex) = false;
  zu::Mutex fJoinMutex;
  std::thread fThread ZU_GUARDED_BY(fJoinMutex);
  const std::thread::id fThreadId;
};

}  // namespace Ky

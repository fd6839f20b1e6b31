// The call thread of one module.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

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

  std::mutex fMutex;
  std::condition_variable fChanged;
  std::deque<Job> fJobs;   // guarded by fMutex
  bool fStopping = false;  // guarded by fMutex
  std::mutex fJoinMutex;
  std::thread fThread;  // joined under fJoinMutex
  const std::thread::id fThreadId;
};

}  // namespace Ky

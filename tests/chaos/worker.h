// SPDX-License-Identifier: Apache-2.0
// A thread for what must not wait for the window, nor keep it waiting.
#pragma once

#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "support/wait.h"
#include "zu/mutex.h"

// Does one task after the other. Thread-safe; what was posted is done before it is destroyed.
class Worker {
 public:
  Worker();
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // The future has what the task returns or throws.
  template <class Task>
  auto post(Task task) {
    auto packed = std::make_shared<std::packaged_task<decltype(task())()>>(std::move(task));
    auto result = packed->get_future();
    add([packed] { (*packed)(); });
    return result;
  }
  // The event loop runs while it waits. GUI thread.
  template <class Task>
  auto wait(Task task) {
    return waitFor(post(std::move(task)));
  }
  template <class Result>
  static Result waitFor(std::future<Result> result) {
    waitUntil(
        [&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    return result.get();
  }

 private:
  void add(std::function<void()> task);
  void run();
  std::function<void()> next();

  zu::Mutex fMutex;
  zu::ConditionVariable fChanged;
  std::vector<std::function<void()>> fTasks ZU_GUARDED_BY(fMutex);
  bool fStop = false;   // the thread's own
  std::thread fThread;  // last: uses all the others
};

// SPDX-License-Identifier: Apache-2.0
// A mutex whose use the compiler checks, and what goes with it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "zu/thread_annotations.h"

namespace zu {

// Not recursive. Thread-safe.
class ZU_CAPABILITY("mutex") Mutex {
 public:
  Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void lock() ZU_ACQUIRE() { fMutex.lock(); }
  void unlock() ZU_RELEASE() { fMutex.unlock(); }

 private:
  friend class ConditionVariable;
  std::mutex fMutex;
};

// Holds a mutex to the end of its scope.
class ZU_SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) ZU_ACQUIRE(mutex) : fMutex(mutex) { mutex.lock(); }
  ~MutexLock() ZU_RELEASE() { fMutex.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& fMutex;
};

// Lets go of a mutex that is held, and takes it again at the end of its scope.
class ZU_SCOPED_CAPABILITY MutexUnlock {
 public:
  explicit MutexUnlock(Mutex& mutex) ZU_RELEASE(mutex) : fMutex(mutex) { mutex.unlock(); }
  ~MutexUnlock() ZU_RELEASE() { fMutex.lock(); }
  MutexUnlock(const MutexUnlock&) = delete;
  MutexUnlock& operator=(const MutexUnlock&) = delete;

 private:
  Mutex& fMutex;
};

// Waits with a mutex held, which it gives back meanwhile. It may return without having been
// notified: whoever waits asks his question in a loop. Thread-safe.
class ConditionVariable {
 public:
  using Clock = std::chrono::steady_clock;

  void wait(Mutex& mutex) ZU_REQUIRES(mutex) {
    std::unique_lock lock(mutex.fMutex, std::adopt_lock);
    fCondition.wait(lock);
    lock.release();
  }
  // False when `end` has come.
  bool waitUntil(Mutex& mutex, Clock::time_point end) ZU_REQUIRES(mutex) {
    std::unique_lock lock(mutex.fMutex, std::adopt_lock);
    const bool inTime = fCondition.wait_until(lock, end) == std::cv_status::no_timeout;
    lock.release();
    return inTime;
  }
  void notifyOne() { fCondition.notify_one(); }
  void notifyAll() { fCondition.notify_all(); }

 private:
  std::condition_variable fCondition;
};

}  // namespace zu

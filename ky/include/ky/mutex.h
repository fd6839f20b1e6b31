// SPDX-License-Identifier: Apache-2.0
// Mutexes that are held by shared pointers, and the guards that lock them.
#pragma once

#include <boost/shared_ptr.hpp>
#include <mutex>
#include <shared_mutex>

#include "zu/thread_annotations.h"

namespace Ky {

// Not recursive. Thread-safe.
class ZU_CAPABILITY("mutex") KyMutex {
 public:
  static boost::shared_ptr<KyMutex> createKyMutex();
  void lock() ZU_ACQUIRE() { fMutex.lock(); }
  void unlock() ZU_RELEASE() { fMutex.unlock(); }

 private:
  std::mutex fMutex;
};

// Many readers or one writer. Not recursive, in neither mode. Thread-safe.
class ZU_CAPABILITY("mutex") KyMutexRW {
 public:
  static boost::shared_ptr<KyMutexRW> createKyMutexRW();
  void readLock() ZU_ACQUIRE_SHARED() { fMutex.lock_shared(); }
  void readUnlock() ZU_RELEASE_SHARED() { fMutex.unlock_shared(); }
  void writeLock() ZU_ACQUIRE() { fMutex.lock(); }
  void writeUnlock() ZU_RELEASE() { fMutex.unlock(); }

 private:
  std::shared_mutex fMutex;
};

// The guards hold the mutex, and keep it alive, until the end of their scope. In their constructors
// the compiler can't see that the mutex which they lock is the one that they were given.
class ZU_SCOPED_CAPABILITY KyCriticalSection {
 public:
  explicit KyCriticalSection(const boost::shared_ptr<KyMutex>& mutex)
      ZU_ACQUIRE(mutex) ZU_NO_THREAD_SAFETY_ANALYSIS;
  ~KyCriticalSection() ZU_RELEASE();
  KyCriticalSection(const KyCriticalSection&) = delete;
  KyCriticalSection& operator=(const KyCriticalSection&) = delete;

 private:
  boost::shared_ptr<KyMutex> fMutex;
};

class ZU_SCOPED_CAPABILITY KyCriticalSectionRead {
 public:
  explicit KyCriticalSectionRead(const boost::shared_ptr<KyMutexRW>& mutex)
      ZU_ACQUIRE_SHARED(mutex) ZU_NO_THREAD_SAFETY_ANALYSIS;
  ~KyCriticalSectionRead() ZU_RELEASE();
  KyCriticalSectionRead(const KyCriticalSectionRead&) = delete;
  KyCriticalSectionRead& operator=(const KyCriticalSectionRead&) = delete;

 private:
  boost::shared_ptr<KyMutexRW> fMutex;
};

class ZU_SCOPED_CAPABILITY KyCriticalSectionWrite {
 public:
  explicit KyCriticalSectionWrite(const boost::shared_ptr<KyMutexRW>& mutex)
      ZU_ACQUIRE(mutex) ZU_NO_THREAD_SAFETY_ANALYSIS;
  ~KyCriticalSectionWrite() ZU_RELEASE();
  KyCriticalSectionWrite(const KyCriticalSectionWrite&) = delete;
  KyCriticalSectionWrite& operator=(const KyCriticalSectionWrite&) = delete;

 private:
  boost::shared_ptr<KyMutexRW> fMutex;
};

}  // namespace Ky

// Mutexes that are held by shared pointers, and the guards that lock them.
#pragma once

#include <boost/shared_ptr.hpp>
#include <mutex>
#include <shared_mutex>

namespace Ky {

// Not recursive. Thread-safe.
class KyMutex {
 public:
  static boost::shared_ptr<KyMutex> createKyMutex();
  void lock() { fMutex.lock(); }
  void unlock() { fMutex.unlock(); }

 private:
  std::mutex fMutex;
};

// Many readers or one writer. Not recursive, in neither mode. Thread-safe.
class KyMutexRW {
 public:
  static boost::shared_ptr<KyMutexRW> createKyMutexRW();
  void readLock() { fMutex.lock_shared(); }
  void readUnlock() { fMutex.unlock_shared(); }
  void writeLock() { fMutex.lock(); }
  void writeUnlock() { fMutex.unlock(); }

 private:
  std::shared_mutex fMutex;
};

// The guards hold the mutex, and keep it alive, until the end of their scope.
class KyCriticalSection {
 public:
  explicit KyCriticalSection(boost::shared_ptr<KyMutex> mutex);
  ~KyCriticalSection();
  KyCriticalSection(const KyCriticalSection&) = delete;
  KyCriticalSection& operator=(const KyCriticalSection&) = delete;

 private:
  boost::shared_ptr<KyMutex> fMutex;
};

class KyCriticalSectionRead {
 public:
  explicit KyCriticalSectionRead(boost::shared_ptr<KyMutexRW> mutex);
  ~KyCriticalSectionRead();
  KyCriticalSectionRead(const KyCriticalSectionRead&) = delete;
  KyCriticalSectionRead& operator=(const KyCriticalSectionRead&) = delete;

 private:
  boost::shared_ptr<KyMutexRW> fMutex;
};

class KyCriticalSectionWrite {
 public:
  explicit KyCriticalSectionWrite(boost::shared_ptr<KyMutexRW> mutex);
  ~KyCriticalSectionWrite();
  KyCriticalSectionWrite(const KyCriticalSectionWrite&) = delete;
  KyCriticalSectionWrite& operator=(const KyCriticalSectionWrite&) = delete;

 private:
  boost::shared_ptr<KyMutexRW> fMutex;
};

}  // namespace Ky

#include "ky/mutex.h"

#include <boost/make_shared.hpp>

namespace Ky {

boost::shared_ptr<KyMutex> KyMutex::createKyMutex() {
  return boost::make_shared<KyMutex>();
}

boost::shared_ptr<KyMutexRW> KyMutexRW::createKyMutexRW() {
  return boost::make_shared<KyMutexRW>();
}

KyCriticalSection::KyCriticalSection(boost::shared_ptr<KyMutex> mutex) : fMutex(std::move(mutex)) {
  fMutex->lock();
}
KyCriticalSection::~KyCriticalSection() {
  fMutex->unlock();
}

KyCriticalSectionRead::KyCriticalSectionRead(boost::shared_ptr<KyMutexRW> mutex)
    : fMutex(std::move(mutex)) {
  fMutex->readLock();
}
KyCriticalSectionRead::~KyCriticalSectionRead() {
  fMutex->readUnlock();
}

KyCriticalSectionWrite::KyCriticalSectionWrite(boost::shared_ptr<KyMutexRW> mutex)
    : fMutex(std::move(mutex)) {
  fMutex->writeLock();
}
KyCriticalSectionWrite::~KyCriticalSectionWrite() {
  fMutex->writeUnlock();
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "ky/mutex.h"

#include <boost/make_shared.hpp>

namespace Ky {

boost::shared_ptr<KyMutex> KyMutex::createKyMutex() {
  return boost::make_shared<KyMutex>();
}

boost::shared_ptr<KyMutexRW> KyMutexRW::createKyMutexRW() {
  return boost::make_shared<KyMutexRW>();
}

KyCriticalSection::KyCriticalSection(const boost::shared_ptr<KyMutex>& mutex) : fMutex(mutex) {
  fMutex->lock();
}
KyCriticalSection::~KyCriticalSection() {
  fMutex->unlock();
}

KyCriticalSectionRead::KyCriticalSectionRead(const boost::shared_ptr<KyMutexRW>& mutex)
    : fMutex(mutex) {
  fMutex->readLock();
}
KyCriticalSectionRead::~KyCriticalSectionRead() {
  fMutex->readUnlock();
}

KyCriticalSectionWrite::KyCriticalSectionWrite(const boost::shared_ptr<KyMutexRW>& mutex)
    : fMutex(mutex) {
  fMutex->writeLock();
}
KyCriticalSectionWrite::~KyCriticalSectionWrite() {
  fMutex->writeUnlock();
}

}  // namespace Ky

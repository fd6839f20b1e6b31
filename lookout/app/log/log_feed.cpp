// SPDX-License-Identifier: Apache-2.0
#include "log/log_feed.h"

namespace Lookout {

LogFeed::LogFeed(std::size_t capacity, QObject* parent) : QObject(parent), fCapacity(capacity) {
  connect(this, &LogFeed::linesCame, this, &LogFeed::deliver, Qt::QueuedConnection);
  fListener = zu::log::Listener([this](const zu::log::Record& record) { add(record); });
}

void LogFeed::add(const zu::log::Record& record) {
  bool isFirst = false;
  {
    const zu::MutexLock guard(fMutex);
    isFirst = fWaiting.empty();
    fWaiting.push_back(record);
    if (fWaiting.size() > fCapacity) fWaiting.pop_front();
  }
  if (isFirst) emit linesCame();
}

void LogFeed::deliver() {
  std::deque<zu::log::Record> waiting;
  {
    const zu::MutexLock guard(fMutex);
    waiting.swap(fWaiting);
  }
  emit lines({waiting.begin(), waiting.end()});
}

}  // namespace Lookout

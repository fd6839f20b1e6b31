#include "log/log_feed.h"

namespace Lookout {

LogFeed::LogFeed(std::size_t capacity, QObject* parent)
    : QObject(parent),
      fCapacity(capacity),
      fListener([this](const zu::log::Record& record) { add(record); }) {
}

void LogFeed::add(const zu::log::Record& record) {
  const std::lock_guard guard(fMutex);
  const bool first = fWaiting.empty();
  fWaiting.push_back(record);
  if (fWaiting.size() > fCapacity) fWaiting.pop_front();
  if (first) QMetaObject::invokeMethod(this, &LogFeed::deliver, Qt::QueuedConnection);
}

void LogFeed::deliver() {
  std::deque<zu::log::Record> waiting;
  {
    const std::lock_guard guard(fMutex);
    waiting.swap(fWaiting);
  }
  emit lines({waiting.begin(), waiting.end()});
}

}  // namespace Lookout

// SPDX-License-Identifier: Apache-2.0
// Brings log lines from all threads to the window.
#pragma once

#include <QObject>
#include <deque>
#include <vector>

#include "zu/log.h"
#include "zu/mutex.h"

namespace Lookout {

// Lives on the GUI thread; the log fills it from any thread. Lines are handed over in batches, so
// that a flood of them costs one event each time the window comes round, and at most `capacity` of
// them wait: the oldest are dropped first.
class LogFeed : public QObject {
  Q_OBJECT

 public:
  explicit LogFeed(std::size_t capacity, QObject* parent = nullptr);

 signals:
  // On the GUI thread, oldest first.
  void lines(const std::vector<zu::log::Record>& records);
  // Lines are waiting: emitted on the thread that wrote them.
  void linesCame();

 private:
  void add(const zu::log::Record& record);
  void deliver();

  const std::size_t fCapacity;
  zu::Mutex fMutex;
  std::deque<zu::log::Record> fWaiting ZU_GUARDED_BY(fMutex);
  zu::log::Listener fListener;  // last: adds to all the others
};

}  // namespace Lookout

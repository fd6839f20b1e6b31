// SPDX-License-Identifier: Apache-2.0
// Brings a broker's news to the GUI thread.
#pragma once

#include <QObject>
#include <boost/shared_ptr.hpp>
#include <memory>
#include <utility>
#include <vector>

#include "ky/broker.h"
#include "zu/mutex.h"

namespace Lookout {

// Lives on the GUI thread; may be deleted by whom it tells something. What it has not told by then
// is never told.
class ConnectionWatcher : public QObject {
  Q_OBJECT

 public:
  // Tells at first whatever is not as `expected`: it happened before there was anybody to tell.
  ConnectionWatcher(boost::shared_ptr<Ky::KyBroker> broker, Ky::KyConnection expected);

  Ky::KyConnection connection() const { return fBroker->connection(); }

 signals:
  void changed(Ky::KyConnection connection, const QString& why);
  // News is waiting: emitted on the broker's thread.
  void newsCame();

 private:
  using News = std::pair<Ky::KyConnection, std::string>;

  void add(Ky::KyConnection connection, const std::string& why);
  void deliver();

  const boost::shared_ptr<Ky::KyBroker> fBroker;
  zu::Mutex fMutex;
  std::vector<News> fNews ZU_GUARDED_BY(fMutex);
  std::unique_ptr<Ky::KyConnectionListener> fListener;  // last: adds to all the others
};

}  // namespace Lookout

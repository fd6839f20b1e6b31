// SPDX-License-Identifier: Apache-2.0
#include "robots/connection_watcher.h"

#include <QPointer>

namespace Lookout {

ConnectionWatcher::ConnectionWatcher(boost::shared_ptr<Ky::KyBroker> broker,
                                     Ky::KyConnection expected)
    : fBroker(std::move(broker)) {
  connect(this, &ConnectionWatcher::newsCame, this, &ConnectionWatcher::deliver,
          Qt::QueuedConnection);
  fListener = fBroker->onConnection(
      [this](Ky::KyConnection connection, const std::string& why) { add(connection, why); });
  const Ky::KyConnection now = fBroker->connection();
  if (now != expected) add(now, tr("the connection broke at once").toStdString());
}

void ConnectionWatcher::add(Ky::KyConnection connection, const std::string& why) {
  {
    const zu::MutexLock guard(fMutex);
    fNews.emplace_back(connection, why);
  }
  emit newsCame();
}

void ConnectionWatcher::deliver() {
  std::vector<News> news;
  {
    const zu::MutexLock guard(fMutex);
    news.swap(fNews);
  }
  const QPointer<ConnectionWatcher> self(this);
  for (const auto& [connection, why] : news) {
    if (!self) return;
    emit changed(connection, QString::fromStdString(why));
  }
}

}  // namespace Lookout

// SPDX-License-Identifier: Apache-2.0
// Turns Ctrl-C into a Qt signal.
#pragma once

#include <QObject>

class QSocketNotifier;

namespace Lookout {

// Catches SIGINT and SIGTERM while it lives; a second one ends the process the hard way. At most
// one at a time. GUI thread.
class SignalWatcher : public QObject {
  Q_OBJECT

 public:
  explicit SignalWatcher(QObject* parent = nullptr);
  ~SignalWatcher() override;

 signals:
  void stopRequested();

 private:
  QSocketNotifier* fNotifier;
};

}  // namespace Lookout

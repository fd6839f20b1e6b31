// SPDX-License-Identifier: Apache-2.0
// Keeps the window painting while its thread waits for a robot.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <string>

#include "ky/meanwhile.h"

class QStatusBar;

namespace Lookout {

// Plug-ins call robots on the GUI thread, and a module may take its time. While one lives, timers
// and paints go on during such a wait; what the user does is kept for afterwards, so that nothing
// is begun in the middle of something else. A wait that people notice is told in the status bar.
// GUI thread.
class PaintWhileWaiting : public QObject {
 public:
  // `status` outlives it.
  explicit PaintWhileWaiting(QStatusBar& status);
  ~PaintWhileWaiting() override;

 private:
  void work(const std::string& what);
  void endWhenOver();
  void end();

  QStatusBar& fStatus;
  QElapsedTimer fSince;  // of a row of waits
  bool fTold = false;
  QTimer fCheck;
  Ky::KyMeanwhile fMeanwhile;
};

}  // namespace Lookout

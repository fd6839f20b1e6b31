// SPDX-License-Identifier: Apache-2.0
#include "window/paint_while_waiting.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStatusBar>

namespace Lookout {
namespace {

constexpr int kTellAfterMs = 300;
constexpr int kCheckMs = 100;

}  // namespace

PaintWhileWaiting::PaintWhileWaiting(QStatusBar& status)
    : fStatus(status), fMeanwhile([this](const std::string& what) { work(what); }) {
  fCheck.setInterval(kCheckMs);
  connect(&fCheck, &QTimer::timeout, this, &PaintWhileWaiting::endWhenOver);
}

PaintWhileWaiting::~PaintWhileWaiting() {
  if (fTold) end();
}

void PaintWhileWaiting::work(const std::string& what) {
  if (!fCheck.isActive()) {
    fSince.start();
    fCheck.start();
  }
  if (fSince.elapsed() >= kTellAfterMs) {
    if (!fTold) QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    fTold = true;
    fStatus.showMessage(QObject::tr("Waiting for %1...").arg(QString::fromStdString(what)));
  }
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// One call may follow the other: it is over when the application's own loop is back.
void PaintWhileWaiting::endWhenOver() {
  if (!Ky::KyMeanwhile::isAtWork()) end();
}

void PaintWhileWaiting::end() {
  fCheck.stop();
  if (!std::exchange(fTold, false)) return;
  fStatus.clearMessage();
  QGuiApplication::restoreOverrideCursor();
}

}  // namespace Lookout

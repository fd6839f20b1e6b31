// SPDX-License-Identifier: Apache-2.0
#include "scripted_run.h"

#include <QPixmap>
#include <QTimer>
#include <cstdio>

#include "lookout/robot_broker.h"
#include "robots/robot_dock.h"
#include "robots/robot_report.h"
#include "window/main_window.h"
#include "window/robot_area.h"
#include "zu/log.h"

namespace Lookout {

ScriptedRun::ScriptedRun(MainWindow& window, CommandLine options, QObject* parent)
    : QObject(parent), fWindow(window), fOptions(std::move(options)) {
  connect(&fWindow, &MainWindow::closing, this, &ScriptedRun::finish);
}

void ScriptedRun::start() {
  for (const Ky::KyAddress& robot : fOptions.insecureRobots) setUnencrypted(robot, true);
  for (const Ky::KyAddress& robot : fOptions.robots) {
    RobotDock* dock = fWindow.connectTo(robot);
    if (dock == nullptr)
      fExitCode = 1;
    else
      dock->session().setPlaying(fOptions.play);
  }
  if (fOptions.quitAfter)
    QTimer::singleShot(std::chrono::milliseconds(static_cast<int>(*fOptions.quitAfter * 1000)),
                       &fWindow, &QWidget::close);
}

void ScriptedRun::finish() {
  if (std::exchange(fFinished, true)) return;
  if (!fOptions.screenshot.isEmpty()) saveScreenshot();
  if (fOptions.report) report();
}

void ScriptedRun::saveScreenshot() {
  if (fWindow.grab().save(fOptions.screenshot, "PNG")) return;
  zu::log::error("lookout", "screenshot") << "cannot write " << fOptions.screenshot.toStdString();
  fExitCode = 1;
}

void ScriptedRun::report() {
  for (RobotDock* dock : fWindow.robots().docks()) {
    if (!dock->session().robot()) continue;
    std::puts(robotReport(*dock).toUtf8().constData());
    if (fOptions.play && dock->session().framesPainted() == 0) fExitCode = 1;
  }
  std::fflush(stdout);
}

}  // namespace Lookout

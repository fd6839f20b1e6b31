// SPDX-License-Identifier: Apache-2.0
#include "scripted_run.h"

#include <QPixmap>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <map>

#include "lookout/robot_broker.h"
#include "robots/robot_dock.h"
#include "robots/robot_report.h"
#include "robots/robot_views.h"
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
    if (fWindow.connectTo(robot, fOptions.robotPlugins) == nullptr) fExitCode = 1;
    const QString name = QString::fromStdString(robot.toString());
    if (!fOptions.pictures.isEmpty()) fWindow.choosePictures(name, fOptions.pictures);
    for (const RobotDock* dock : fWindow.robots().docksOf(name)) prepare(*dock);
  }
  if (fOptions.quitAfter)
    QTimer::singleShot(std::chrono::milliseconds(static_cast<int>(*fOptions.quitAfter * 1000)),
                       &fWindow, &QWidget::close);
}

void ScriptedRun::prepare(const RobotDock& dock) {
  for (const auto& [setting, value] : fOptions.choices)
    dock.session().chooseAtFirst(setting, value);
  if (fOptions.stage) dock.views().open("stage");
  if (fOptions.play) dock.session().setPlaying(true);
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
  std::map<QString, quint64> painted;
  for (const RobotDock* dock : fWindow.robots().docks()) {
    if (!dock->session().robot()) continue;
    const bool isOneOfSeveral = fWindow.robots().docksOf(dock->robotName()).size() > 1;
    std::puts(robotReport(*dock, isOneOfSeveral).toUtf8().constData());
    painted[dock->robotName()] += dock->framesPainted();
  }
  std::fflush(stdout);
  const bool oneHasNothing = std::any_of(painted.begin(), painted.end(),
                                         [](const auto& robot) { return robot.second == 0; });
  if (fOptions.play && oneHasNothing) fExitCode = 1;
}

}  // namespace Lookout

// SPDX-License-Identifier: Apache-2.0
// The window "Lookout" with the viewer, on real robots.
#pragma once

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTimer>
#include <memory>
#include <string>

#include "lookout/settings_of_test.h"
#include "robot/kyrobot_process.h"
#include "robots/robot_dock.h"
#include "robots/robot_session.h"
#include "support/wait.h"
#include "window/main_window.h"

// How long the application's thread was busy with one thing at most. GUI thread.
class StallMeter {
 public:
  StallMeter() {
    fSince.start();
    QObject::connect(&fTimer, &QTimer::timeout,
                     [this] { fLongest = std::max(fLongest, fSince.restart()); });
    fTimer.start(5);
  }
  qint64 longestMs() const { return std::max(fLongest, fSince.elapsed()); }

 private:
  QTimer fTimer;
  QElapsedTimer fSince;
  qint64 fLongest = 0;
};

// A peer is lost after 2 s at the latest; the rest is for a machine that is busy itself.
constexpr qint64 kLongestStallMs = 3000;

// GUI thread.
struct WindowOnRobots {
  WindowOnRobots() {
    QStandardPaths::setTestModeEnabled(true);
    open();
  }

  // As the program does when it starts.
  void open() {
    window.reset();  // two at once would share the plug-ins' objects
    window = std::make_unique<Lookout::MainWindow>(LOOKOUT_PLUGINS, LOOKOUT_ICONS);
    window->show();
  }

  // Docks the robot and waits until its picture runs.
  Lookout::RobotSession* play(const Ky::KyAddress& robot) {
    Lookout::RobotDock* dock = window->connectTo(robot);
    if (dock == nullptr) return nullptr;
    Lookout::RobotSession* session = &dock->session();
    session->setPlaying(true);
    return waitForFrames(*session, 3) ? session : nullptr;
  }

  static bool waitForFrames(Lookout::RobotSession& session, quint64 more) {
    const quint64 before = session.framesPainted();
    return waitUntil([&] { return session.framesPainted() >= before + more; });
  }

  const SettingsOfTest settings;
  std::unique_ptr<Lookout::MainWindow> window;
};

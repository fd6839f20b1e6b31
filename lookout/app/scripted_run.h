// SPDX-License-Identifier: Apache-2.0
// What the command line asks for beyond a window.
#pragma once

#include <QObject>

#include "command_line.h"

namespace Lookout {

class MainWindow;
class RobotDock;

// Connects to the robots, chooses what they show, plays, and at the end saves the picture and
// prints the report. GUI thread.
class ScriptedRun : public QObject {
  Q_OBJECT

 public:
  // The window outlives it.
  ScriptedRun(MainWindow& window, CommandLine options, QObject* parent = nullptr);

  void start();
  // 0, or 1 when the picture was not saved, no plug-in shows robots, or a robot that was to be
  // played painted nothing and a report was asked for. Final once the window has closed.
  int exitCode() const { return fExitCode; }

 private:
  void prepare(const RobotDock& dock);
  void finish();
  void saveScreenshot();
  void report();

  MainWindow& fWindow;
  const CommandLine fOptions;
  bool fFinished = false;
  int fExitCode = 0;
};

}  // namespace Lookout

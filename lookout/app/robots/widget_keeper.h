// SPDX-License-Identifier: Apache-2.0
// Hands a widget's state from one run of the program to the next.
#pragma once

#include <QObject>

#include "robots/robot_memory.h"

class QWidget;

namespace Lookout {

class RobotSession;

// Lets a session begin as its robot was left by the same plug-in, and keeps how it is left this
// time: at each loss of the robot, and when told. Nothing is kept of a widget that nobody has
// touched, unless it replaces what was kept before. GUI thread.
class WidgetKeeper : public QObject {
  Q_OBJECT

 public:
  // The session has a robot, has not started yet, and outlives it. `startsFresh`: what was kept is
  // not given to it.
  WidgetKeeper(RobotSession& session, QString plugin, bool startsFresh);

  // Does nothing once the session has ended.
  void keep() const;

 private:
  void meet(const QWidget* widget);

  RobotSession& fSession;
  const QString fRobot;
  const QString fPlugin;
  bool fHadWidget = false;
  WidgetMemory fUntouched;  // how the plug-in made the newest
};

}  // namespace Lookout

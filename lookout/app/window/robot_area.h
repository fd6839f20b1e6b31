// SPDX-License-Identifier: Apache-2.0
// The part of the window that holds the robots.
#pragma once

#include <QMainWindow>
#include <vector>

#include "robots/robot_dock.h"

class QLabel;

namespace Lookout {

// A dock for each plug-in of a robot, side by side while the screen has room and in tabs otherwise;
// a hint while there is none. A main window within the main window, so that the log and the robots
// don't compete for room. GUI thread.
class RobotArea : public QMainWindow {
  Q_OBJECT

 public:
  explicit RobotArea(QWidget* parent = nullptr);
  // Ends all robots.
  ~RobotArea() override;

  // Takes the dock over, shows it and starts its session.
  void add(RobotDock* dock);
  const std::vector<RobotDock*>& docks() const { return fDocks; }
  // Those of one robot that are not about to go, the oldest first.
  std::vector<RobotDock*> docksOf(const QString& robotName) const;
  // The one with the keyboard focus, or else the last that had it, came to the front or was added;
  // null when there is none.
  RobotDock* current() const;
  void setHint(const QString& text);

 signals:
  void connectRequested();
  // A dock came or went.
  void changed();
  // A widget needs this much more room than there is.
  void roomWanted(const QSize& missing);

 private:
  void buildHint();
  void place(RobotDock* dock);
  void forget(RobotDock* dock);
  void followFocus(const QWidget* focused);
  // Asks for the room that a dock lacks, and gives each what it needs of it.
  void makeRoom(RobotDock& shown);
  // Of a dock and of those in tabs with it.
  QSize wantedSize(RobotDock& dock) const;

  QWidget* fHint = nullptr;
  QLabel* fHintText = nullptr;
  std::vector<RobotDock*> fDocks;
  RobotDock* fCurrent = nullptr;
};

}  // namespace Lookout

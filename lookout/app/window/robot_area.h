// SPDX-License-Identifier: Apache-2.0
// The part of the window that holds the robots.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <optional>
#include <vector>

#include "robots/robot_dock.h"
#include "robots/view_dock.h"
#include "window/view_wall.h"

class QLabel;

namespace Lookout {

// A dock for each plug-in of a robot, and for each further view of what it shows, side by side
// while the screen has room and in tabs otherwise; a hint while there is none. A main window within
// the main window, so that the log and the robots don't compete for room. GUI thread.
class RobotArea : public QMainWindow {
  Q_OBJECT

 public:
  explicit RobotArea(QWidget* parent = nullptr);
  // Ends all robots.
  ~RobotArea() override;

  // Takes the dock over, shows it and starts its session. Where the area is empty, it and what
  // comes later get the places that they had in `places`, if any.
  void add(RobotDock* dock, const QByteArray& places = {});
  // Where everything stands, but for a wall.
  QByteArray places() const { return fWall.placesWithoutIt(); }
  const std::vector<RobotDock*>& docks() const { return fDocks; }
  // Those of one robot that are not about to go, the oldest first.
  std::vector<RobotDock*> docksOf(const QString& robotName) const;
  // The one with the keyboard focus, or else the last that had it, came to the front or was added;
  // null when there is none.
  RobotDock* current() const;
  // The view with the keyboard focus, or else the last of the current robot's that came to the
  // front; null when it has none.
  ViewDock* currentView() const;
  // The stages of all robots side by side, and nothing else; each robot that has none open gets
  // one. Then again everything as it was before.
  void setWall(bool up);
  bool isWall() const { return fWall.isUp(); }
  bool canHaveWall() const;
  void setHint(const QString& text);

 signals:
  void connectRequested();
  // A dock came or went.
  void changed();
  // A robot was asked for a view or a setting that it does not have; in words for the user.
  void refused(const QString& why);
  // A widget needs this much more room than there is.
  void roomWanted(const QSize& missing);

 private:
  void buildHint();
  void place(RobotDock* dock);
  void putUpWall();
  void takeDownWall();
  // After one of its stages has come or gone.
  void renewWall();
  void addView(RobotDock* robot, ViewDock* view);
  void placeView(RobotDock* robot, ViewDock* view);
  // Where a view can stand beside this one, how much wider the window has to be for it.
  std::optional<int> growthFor(QDockWidget& neighbour) const;
  void forget(RobotDock* dock);
  void followFocus(const QWidget* focused);
  // Asks for the room that a dock lacks, and gives each what it needs of it.
  void makeRoom(RobotDock& shown);
  // Of a dock and of those in tabs with it.
  QSize wantedSize(QDockWidget& dock) const;
  std::vector<ViewDock*> views() const;
  // Which neither float nor stand behind a tab.
  std::vector<QDockWidget*> docksInSight() const;

  ViewWall fWall{*this};
  QWidget* fHint = nullptr;
  QLabel* fHintText = nullptr;
  std::vector<RobotDock*> fDocks;
  RobotDock* fCurrent = nullptr;
  QPointer<ViewDock> fCurrentView;
};

}  // namespace Lookout

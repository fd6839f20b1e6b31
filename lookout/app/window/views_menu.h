// SPDX-License-Identifier: Apache-2.0
// The menu View: the log, and the views of the current robot.
#pragma once

#include <QMenu>

namespace Lookout {

class RobotDock;
class ViewDock;

// GUI thread.
class ViewsMenu : public QMenu {
  Q_OBJECT

 public:
  // `log` shows and hides the log.
  explicit ViewsMenu(QAction* log, QWidget* parent = nullptr);

  struct Situation {
    const RobotDock* robot = nullptr;  // the current one; null: none
    const ViewDock* view = nullptr;    // the current one; null: none
    bool isWall = false;
    bool canHaveWall = false;
  };
  // Offers what there is to open, and what can be done with the view.
  void showFor(const Situation& now);

 signals:
  // By the user.
  void viewWanted(const QString& kind, bool another);
  void fullScreenWanted();
  void wallWanted(bool up);

 private:
  void offer(const RobotDock* robot);
  void add(const QString& text, const QString& kind, bool another, bool isOffered);

  QList<QAction*> fOffers;  // above fEnd
  QAction* fEnd;
  QAction* fFullScreen;
  QAction* fWall;
};

}  // namespace Lookout

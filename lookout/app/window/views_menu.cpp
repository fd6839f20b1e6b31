// SPDX-License-Identifier: Apache-2.0
#include "window/views_menu.h"

#include "robots/robot_dock.h"
#include "robots/robot_views.h"
#include "robots/view_dock.h"
#include "robots/view_kind.h"

namespace Lookout {

ViewsMenu::ViewsMenu(QAction* log, QWidget* parent) : QMenu(tr("&View"), parent) {
  addAction(log);
  addSeparator();
  fEnd = addSeparator();
  // No shortcut of the window's: a view may have the key for itself.
  fFullScreen = addAction(tr("&Full screen") + "\tF11", this, &ViewsMenu::fullScreenWanted);
  fWall = addAction(tr("&Wall"), this, [this] { emit wallWanted(fWall->isChecked()); });
  fWall->setCheckable(true);
  fWall->setStatusTip(tr("The stages of all robots side by side, and nothing else"));
  showFor({});
}

void ViewsMenu::showFor(const Situation& now) {
  offer(now.robot);
  fFullScreen->setEnabled(now.view != nullptr ||
                          (now.robot != nullptr && !now.robot->views().kinds().isEmpty()));
  fWall->setChecked(now.isWall);
  fWall->setEnabled(now.isWall || now.canHaveWall);
}

void ViewsMenu::offer(const RobotDock* robot) {
  qDeleteAll(std::exchange(fOffers, {}));
  QStringList kinds = robot != nullptr ? robot->views().kinds() : QStringList();
  const bool isOffered = !kinds.isEmpty();
  if (!isOffered) kinds << "stage";  // so that people see what there could be
  for (const QString& kind : kinds) {
    const ViewKind words = viewKind(kind);
    add(words.open, kind, false, isOffered);
    if (!words.another.isEmpty()) add(words.another, kind, true, isOffered);
  }
}

void ViewsMenu::add(const QString& text, const QString& kind, bool another, bool isOffered) {
  auto* action = new QAction(text, this);
  action->setEnabled(isOffered);
  connect(action, &QAction::triggered, this,
          [this, kind, another] { emit viewWanted(kind, another); });
  insertAction(fEnd, action);
  fOffers.append(action);
}

}  // namespace Lookout

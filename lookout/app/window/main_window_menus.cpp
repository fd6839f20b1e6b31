// SPDX-License-Identifier: Apache-2.0
// The menus, shortcuts and tool bar of the main window.
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>

#include "lookout/widget_interface.h"
#include "robots/robot_dock.h"
#include "robots/robot_views.h"
#include "window/main_window.h"
#include "window/pictures_menu.h"
#include "window/robot_area.h"
#include "window/views_menu.h"

namespace Lookout {

void MainWindow::buildMenus() {
  QMenu* robot = menuBar()->addMenu(tr("&Robot"));
  QAction* connectAction =
      robot->addAction(tr("&Connect..."), QKeySequence::New, this, &MainWindow::askForRobot);
  connectAction->setIcon(style()->standardIcon(QStyle::SP_DriveNetIcon));
  connectAction->setToolTip(tr("Connect to a robot (Ctrl+N)"));
  for (const Plugin* plugin : fCatalog->loaded())
    if (!plugin->interface->requiresConnection())
      robot->addAction(tr("&Open %1").arg(plugin->name), this, [this, plugin] { open(*plugin); });
  fPluginsOfRobot = robot->addMenu(tr("Plu&g-ins"));
  fPluginsOfRobot->menuAction()->setVisible(hasChoice());
  connect(robot, &QMenu::aboutToShow, this, &MainWindow::nameCurrentRobot);
  connect(fPluginsOfRobot, &QMenu::aboutToShow, this, [this] {
    const RobotDock* current = fRobots->current();
    if (current != nullptr && current->session().robot())
      listPlugins(*fPluginsOfRobot, *current->session().robot());
  });
  fPictures = new PicturesMenu(robot);
  robot->addMenu(fPictures);
  connect(fPictures, &PicturesMenu::chosen, this, [this](const QString& word) {
    if (const RobotDock* current = fRobots->current()) choosePictures(current->robotName(), word);
  });
  fCloseRobot = robot->addAction(tr("C&lose robot"), QKeySequence::Close, this,
                                 &MainWindow::closeCurrentRobot);
  fCloseRobot->setEnabled(false);
  robot->addSeparator();
  QAction* preferences = robot->addAction(tr("&Preferences..."), QKeySequence("Ctrl+,"), this,
                                          &MainWindow::showPreferences);
  preferences->setMenuRole(QAction::PreferencesRole);
  robot->addSeparator();
  robot->addAction(tr("&Quit"), QKeySequence("Ctrl+Q"), this, &QWidget::close)
      ->setMenuRole(QAction::QuitRole);

  QAction* log = fLogDock->toggleViewAction();
  log->setText(tr("&Log"));
  log->setShortcut(QKeySequence("Ctrl+L"));
  log->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
  buildViewsMenu(log);

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  help->addAction(tr("&Plug-ins..."), this, &MainWindow::showPlugins);
  help->addAction(tr("&About Lookout"), this, &MainWindow::showAbout);

  QToolBar* tools = addToolBar(tr("Tools"));
  tools->setObjectName("tools");
  tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  tools->setIconSize({16, 16});
  tools->setMovable(false);
  tools->addActions({connectAction, log});
}

void MainWindow::buildViewsMenu(QAction* log) {
  auto* views = new ViewsMenu(log, this);
  menuBar()->addMenu(views);
  connect(views, &QMenu::aboutToShow, this, [this, views] {
    views->showFor(
        {fRobots->current(), fRobots->currentView(), fRobots->isWall(), fRobots->canHaveWall()});
  });
  connect(views, &ViewsMenu::viewWanted, this, [this](const QString& kind, bool another) {
    if (const RobotDock* robot = fRobots->current()) robot->views().open(kind, another);
  });
  connect(views, &ViewsMenu::fullScreenWanted, this, &MainWindow::toggleFullScreen);
  connect(views, &ViewsMenu::wallWanted, fRobots, &RobotArea::setWall);
}

// The menu opens for the robot whose dock is current now.
void MainWindow::nameCurrentRobot() {
  const RobotDock* current = fRobots->current();
  const bool hasRobot = current != nullptr && current->session().robot();
  fPluginsOfRobot->setTitle(hasRobot ? tr("Plu&g-ins of %1").arg(current->robotName())
                                     : tr("Plu&g-ins"));
  fPluginsOfRobot->setEnabled(hasRobot);
  fPictures->showFor(hasRobot ? &current->session() : nullptr);
}

QMenu* MainWindow::menuOfPlugins(const Ky::KyAddress& robot) {
  auto* menu = new QMenu(this);
  connect(menu, &QMenu::aboutToShow, this, [this, menu, robot] { listPlugins(*menu, robot); });
  return menu;
}

void MainWindow::listPlugins(QMenu& menu, const Ky::KyAddress& robot) {
  const QStringList open = openPlugins(QString::fromStdString(robot.toString()));
  menu.clear();
  for (const Plugin* plugin : fCatalog->allForRobots()) {
    const bool isOpen = open.contains(plugin->name);
    QAction* action =
        menu.addAction(isOpen ? tr("%1 (open)").arg(plugin->name) : tr("Open %1").arg(plugin->name),
                       this, [this, plugin, robot] { openFor(robot, *plugin); });
    action->setCheckable(true);
    action->setChecked(isOpen);
  }
}

}  // namespace Lookout

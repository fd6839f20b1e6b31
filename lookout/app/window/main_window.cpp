// SPDX-License-Identifier: Apache-2.0
#include "window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>

#include "log/log_panel.h"
#include "lookout/robot_broker.h"
#include "plugins/plugins_dialog.h"
#include "robots/connect_dialog.h"
#include "robots/remembered_robots.h"
#include "robots/robot_address.h"
#include "robots/robot_dock.h"
#include "window/paint_while_waiting.h"
#include "window/preferences_dialog.h"
#include "window/robot_area.h"
#include "window/room.h"

namespace Lookout {
namespace {

// Holds a viewer of 950 x 660 and the log.
constexpr QSize kDefaultSize(980, 920);
constexpr int kLogHeight = 130;

}  // namespace

MainWindow::MainWindow(const QString& plugins, QString icons, Layout layout, QWidget* parent)
    : QMainWindow(parent), fIcons(std::move(icons)), fLayout(layout) {
  setWindowTitle("Lookout");
  buildRobots();
  buildLog();
  fCatalog = std::make_unique<PluginCatalog>(plugins);
  buildMenus();
  showCatalog();
  fPainting = std::make_unique<PaintWhileWaiting>(*statusBar());
  restoreLayout();
}

MainWindow::~MainWindow() {
  hide();          // robots may take their time to go
  delete fRobots;  // before the plug-ins
}

// ---- robots

void MainWindow::askForRobot() {
  ConnectDialog dialog(this);
  if (dialog.exec() != QDialog::Accepted) return;
  RememberedRobots::remember(QString::fromStdString(dialog.robot().toString()),
                             dialog.isUnencrypted());
  setUnencrypted(dialog.robot(), dialog.isUnencrypted());
  connectTo(dialog.robot());
}

RobotDock* MainWindow::connectTo(const Ky::KyAddress& robot) {
  const QString name = QString::fromStdString(robot.toString());
  if (RobotDock* present = fRobots->find(name)) {
    if (present->isExposed() == isExposed(robot)) {
      present->raise();
      return present;
    }
    present->close();
  }
  const Plugin* plugin = fCatalog->forRobots();
  if (plugin == nullptr) {
    statusBar()->showMessage(fCatalog->error());
    return nullptr;
  }
  return dock(*plugin, robot);
}

RobotDock* MainWindow::open(const Plugin& plugin) {
  return dock(plugin, std::nullopt);
}

RobotDock* MainWindow::dock(const Plugin& plugin, std::optional<Ky::KyAddress> robot) {
  auto* added = new RobotDock(plugin, std::move(robot), fIcons, fCloser, fRobots);
  fRobots->add(added);
  return added;
}

void MainWindow::closeCurrentRobot() {
  if (RobotDock* current = fRobots->current()) current->close();
}

// ---- the rest of the window

void MainWindow::buildRobots() {
  fRobots = new RobotArea(this);
  setCentralWidget(fRobots);
  connect(fRobots, &RobotArea::connectRequested, this, &MainWindow::askForRobot);
  connect(fRobots, &RobotArea::roomWanted, this, &MainWindow::grow);
  connect(fRobots, &RobotArea::changed, this,
          [this] { fCloseRobot->setEnabled(!fRobots->docks().empty()); });
}

void MainWindow::grow(const QSize& by) {
  if (isMaximized() || isFullScreen()) return;
  resize((size() + by).boundedTo(roomOnScreen(*this)).expandedTo(size()));
}

void MainWindow::buildLog() {
  fLogDock = new QDockWidget(tr("Log"), this);
  fLogDock->setObjectName("log");
  fLog = new LogPanel(fLogDock);
  fLogDock->setWidget(fLog);
  addDockWidget(Qt::BottomDockWidgetArea, fLogDock);
}

void MainWindow::showCatalog() {
  const QString error = fCatalog->error();
  fRobots->setHint(error.isEmpty() ? tr("No robot is connected.") : error);
  const auto loaded = fCatalog->loaded().size();
  const auto failed = fCatalog->plugins().size() - loaded;
  QString summary = tr("Plug-ins: %1 loaded").arg(loaded);
  if (failed > 0) summary += tr(", %1 failed: see Help > Plug-ins").arg(failed);
  statusBar()->addPermanentWidget(new QLabel(summary, this));
}

void MainWindow::restoreLayout() {
  resize(kDefaultSize.boundedTo(roomOnScreen(*this)));
  resizeDocks({fLogDock}, {kLogHeight}, Qt::Vertical);
  if (fLayout == Layout::Standard) return;
  const QSettings settings;
  restoreGeometry(settings.value("Window/geometry").toByteArray());
  restoreState(settings.value("Window/state").toByteArray());
}

void MainWindow::saveLayout() const {
  if (fLayout == Layout::Standard) return;
  QSettings settings;
  settings.setValue("Window/geometry", saveGeometry());
  settings.setValue("Window/state", saveState());
}

void MainWindow::closeEvent(QCloseEvent* event) {
  emit closing();
  saveLayout();
  // The robots end with this object: now one of their dialogs may still be open.
  event->accept();
}

void MainWindow::showPlugins() {
  PluginsDialog(*fCatalog, this).exec();
}

void MainWindow::showPreferences() {
  PreferencesDialog(this).exec();
}

void MainWindow::showAbout() {
  QMessageBox::about(
      this, tr("About Lookout"),
      tr("<p><b>Lookout %1</b></p><p>Shows what robots see.</p>").arg(LOOKOUT_VERSION));
}

}  // namespace Lookout

// SPDX-License-Identifier: Apache-2.0
#include "window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <algorithm>

#include "log/log_panel.h"
#include "lookout/robot_broker.h"
#include "plugins/plugins_dialog.h"
#include "robots/connect_dialog.h"
#include "robots/picture_choice.h"
#include "robots/remembered_robots.h"
#include "robots/robot_address.h"
#include "robots/robot_dock.h"
#include "robots/robot_memory.h"
#include "robots/robot_views.h"
#include "window/paint_while_waiting.h"
#include "window/preferences_dialog.h"
#include "window/robot_area.h"
#include "window/room.h"

namespace Lookout {
namespace {

// Holds a viewer of 950 x 660 and the log.
constexpr QSize kDefaultSize(980, 920);
constexpr int kLogHeight = 130;
constexpr int kRefusalMs = 10000;  // for reading

}  // namespace

MainWindow::MainWindow(const QString& plugins, QString icons, Past past, QWidget* parent)
    : QMainWindow(parent), fIcons(std::move(icons)), fPast(past) {
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

RobotDock* MainWindow::connectTo(const Ky::KyAddress& robot, const QStringList& plugins) {
  const QString name = QString::fromStdString(robot.toString());
  QStringList wanted = plugins;
  if (const std::vector<RobotDock*> present = fRobots->docksOf(name); !present.empty()) {
    if (wanted.isEmpty()) wanted = openPlugins(name);
    if (present.front()->isExposed() != isExposed(robot))
      for (RobotDock* dock : present) dock->close();
  }
  std::vector<RobotDock*> docks;
  for (const Plugin* plugin : chosen(name, wanted)) docks.push_back(openFor(robot, *plugin));
  if (docks.empty()) {
    statusBar()->showMessage(fCatalog->error());
    return nullptr;
  }
  docks.front()->raise();
  return docks.front();
}

std::vector<const Plugin*> MainWindow::chosen(const QString& robot,
                                              const QStringList& plugins) const {
  const QStringList before = takesUpThePast() ? RobotMemory::plugins(robot) : QStringList();
  for (const QStringList& names : {plugins, before}) {
    std::vector<const Plugin*> found;
    for (const QString& name : names)
      if (const Plugin* plugin = fCatalog->forRobots(name)) found.push_back(plugin);
    if (!found.empty()) return found;
  }
  const Plugin* usual = fCatalog->forRobots();
  return usual != nullptr ? std::vector{usual} : std::vector<const Plugin*>();
}

RobotDock* MainWindow::openFor(const Ky::KyAddress& robot, const Plugin& plugin) {
  const QString name = QString::fromStdString(robot.toString());
  for (RobotDock* present : fRobots->docksOf(name))
    if (present->pluginName() == plugin.name) {
      present->raise();
      return present;
    }
  RobotDock* added = dock(plugin, robot);
  if (hasChoice()) added->offer(menuOfPlugins(robot));
  connect(added, &RobotDock::closed, this, [this, name] { remember(name, openPlugins(name)); });
  remember(name, openPlugins(name));
  return added;
}

QStringList MainWindow::openPlugins(const QString& robot) const {
  QStringList names;
  for (const RobotDock* dock : fRobots->docksOf(robot)) names << dock->pluginName();
  return names;
}

// A robot without any is closed: it is to come back as it was.
void MainWindow::remember(const QString& robot, const QStringList& plugins) const {
  if (fPast == Past::Remembered && !plugins.isEmpty()) RobotMemory::setPlugins(robot, plugins);
}

bool MainWindow::takesUpThePast() const {
  return fPast == Past::Remembered && !PreferencesDialog::startsFresh();
}

// ---- how its pictures come

void MainWindow::choosePictures(const QString& robot, const QString& word) {
  for (const RobotDock* dock : fRobots->docksOf(robot))
    dock->session().setPreference(kPicturePreference, word.toStdString());
  if (fPast == Past::Remembered) RobotMemory::setPictures(robot, word);
}

QString MainWindow::picturesOf(const QString& robot) const {
  if (const std::vector<RobotDock*> docks = fRobots->docksOf(robot); !docks.empty())
    return QString::fromStdString(docks.front()->session().preference(kPicturePreference));
  const QString before = takesUpThePast() ? RobotMemory::pictures(robot) : QString();
  return pictureWords().contains(before) ? before : pictureWords().first();
}

// ---- docks

RobotDock* MainWindow::open(const Plugin& plugin) {
  return dock(plugin, std::nullopt);
}

RobotDock* MainWindow::dock(const Plugin& plugin, std::optional<Ky::KyAddress> robot) {
  auto* added = new RobotDock(plugin, std::move(robot), fIcons, fCloser, fRobots);
  if (added->session().robot()) {
    const QString word = picturesOf(added->robotName());
    added->session().setPreference(kPicturePreference, word.toStdString());
    if (fPast == Past::Remembered) added->remember(!takesUpThePast());
  }
  const QString name = added->robotName();
  fRobots->add(added, takesUpThePast() ? RobotMemory::places(name) : QByteArray());
  connect(added, &RobotDock::closing, this, [this, name] { keepPlaces(name, placesToKeep(name)); });
  added->openViewsOfBefore();
  return added;
}

// Where nobody opened a view, everything is placed anew the next time.
QByteArray MainWindow::placesToKeep(const QString& robot) const {
  const std::vector<RobotDock*> all = fRobots->docksOf(robot);
  const bool hasViews = std::any_of(
      all.begin(), all.end(), [](const RobotDock* one) { return !one->views().docks().empty(); });
  return hasViews ? fRobots->places() : QByteArray();
}

void MainWindow::keepPlaces(const QString& robot, const QByteArray& places) const {
  if (fPast == Past::Remembered && !robot.isEmpty()) RobotMemory::setPlaces(robot, places);
}

void MainWindow::closeCurrentRobot() {
  RobotDock* current = fRobots->current();
  if (current == nullptr) return;
  if (!current->session().robot()) {
    current->close();
    return;
  }
  const QString robot = current->robotName();
  const QStringList plugins = openPlugins(robot);
  const QByteArray places = placesToKeep(robot);
  for (RobotDock* dock : fRobots->docksOf(robot)) dock->close();
  remember(robot, plugins);
  keepPlaces(robot, places);
}

void MainWindow::toggleFullScreen() {
  ViewDock* view = fRobots->currentView();
  if (const RobotDock* robot = fRobots->current(); view == nullptr && robot != nullptr)
    if (const QStringList kinds = robot->views().kinds(); !kinds.isEmpty())
      view = robot->views().open(kinds.first());
  if (view != nullptr) view->setFillsScreen(!view->fillsScreen());
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F11 && event->modifiers() == Qt::NoModifier)
    toggleFullScreen();
  else
    QMainWindow::keyPressEvent(event);
}

// ---- the rest of the window

void MainWindow::buildRobots() {
  fRobots = new RobotArea(this);
  setCentralWidget(fRobots);
  connect(fRobots, &RobotArea::connectRequested, this, &MainWindow::askForRobot);
  connect(fRobots, &RobotArea::roomWanted, this, &MainWindow::grow);
  connect(fRobots, &RobotArea::changed, this,
          [this] { fCloseRobot->setEnabled(!fRobots->docks().empty()); });
  connect(fRobots, &RobotArea::refused, this,
          [this](const QString& why) { statusBar()->showMessage(why, kRefusalMs); });
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
  const QString summary =
      failed == 0
          ? tr("Plug-ins: %1 loaded").arg(loaded)
          : tr("Plug-ins: %1 loaded, %2 failed: see Help > Plug-ins").arg(loaded).arg(failed);
  statusBar()->addPermanentWidget(new QLabel(summary, this));
}

void MainWindow::restoreLayout() {
  resize(kDefaultSize.boundedTo(roomOnScreen(*this)));
  resizeDocks({fLogDock}, {kLogHeight}, Qt::Vertical);
  if (fPast == Past::Ignored) return;
  const QSettings settings;
  restoreGeometry(settings.value("Window/geometry").toByteArray());
  restoreState(settings.value("Window/state").toByteArray());
}

void MainWindow::saveLayout() const {
  if (fPast == Past::Ignored) return;
  QSettings settings;
  settings.setValue("Window/geometry", saveGeometry());
  settings.setValue("Window/state", saveState());
}

void MainWindow::closeEvent(QCloseEvent* event) {
  emit closing();
  saveLayout();
  for (RobotDock* dock : fRobots->docks()) {
    keepPlaces(dock->robotName(), placesToKeep(dock->robotName()));
    dock->keepForGood();
  }
  fPast = Past::Ignored;  // floating docks close behind it, and nobody wanted them gone
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

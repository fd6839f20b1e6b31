#include "window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>

#include "log/log_panel.h"
#include "lookout/widget_interface.h"
#include "plugins/plugins_dialog.h"
#include "robots/connect_dialog.h"
#include "robots/remembered_robots.h"
#include "robots/robot_dock.h"
#include "window/preferences_dialog.h"
#include "window/room.h"

namespace Lookout {
namespace {

constexpr QSize kDefaultSize(1010, 940);
constexpr int kLogHeight = 130;

}  // namespace

MainWindow::MainWindow(const QString& plugins, QString icons, QWidget* parent)
    : QMainWindow(parent), fIcons(std::move(icons)) {
  setWindowTitle("Lookout");
  setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  buildHint();
  buildLog();
  fCatalog = std::make_unique<PluginCatalog>(plugins);
  buildMenus();
  showCatalog();
  restoreLayout();
}

MainWindow::~MainWindow() {
  // Before the plug-ins go.
  for (RobotDock* dock : fDocks) {
    dock->disconnect(this);
    delete dock;
  }
}

// ---- robots

void MainWindow::askForRobot() {
  ConnectDialog dialog(this);
  if (dialog.exec() != QDialog::Accepted) return;
  RememberedRobots::remember(QString::fromStdString(dialog.robot().toString()));
  connectTo(dialog.robot());
}

RobotDock* MainWindow::connectTo(const Ky::KyAddress& robot) {
  const QString name = QString::fromStdString(robot.toString());
  for (RobotDock* dock : fDocks)
    if (dock->robotName() == name) {
      dock->raise();
      return dock;
    }
  const Plugin* plugin = fCatalog->forRobots();
  if (plugin == nullptr) {
    statusBar()->showMessage(fCatalog->error());
    return nullptr;
  }
  return addDock(*plugin, robot);
}

RobotDock* MainWindow::open(const Plugin& plugin) {
  return addDock(plugin, std::nullopt);
}

RobotDock* MainWindow::addDock(const Plugin& plugin, std::optional<Ky::KyAddress> robot) {
  auto* dock = new RobotDock(plugin, std::move(robot), fIcons, this);
  RobotDock* neighbour = nullptr;
  for (RobotDock* other : fDocks)
    if (!other->isFloating()) neighbour = other;
  fDocks.push_back(dock);
  fHint->hide();
  fCloseRobot->setEnabled(true);
  if (neighbour == nullptr)
    addDockWidget(Qt::TopDockWidgetArea, dock);
  else if (hasRoomBeside(*this, *neighbour))
    splitDockWidget(neighbour, dock, Qt::Horizontal);
  else
    tabifyDockWidget(neighbour, dock);
  connect(dock, &RobotDock::closed, this, [this, dock] { forget(dock); });
  connect(dock, &RobotDock::widgetShown, this, [this, dock] { growFor(*dock); });
  dock->show();
  dock->raise();
  dock->session().start();
  return dock;
}

void MainWindow::forget(RobotDock* dock) {
  std::erase(fDocks, dock);
  fHint->setVisible(fDocks.empty());
  fCloseRobot->setEnabled(!fDocks.empty());
}

void MainWindow::growFor(const RobotDock& dock) {
  if (dock.isFloating() || isMaximized() || isFullScreen()) return;
  // Docks take what they show into account only after their next layout.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  const QSize wanted = size() + dock.missingSize();
  resize(wanted.boundedTo(roomOnScreen(*this)).expandedTo(size()));
}

void MainWindow::closeCurrentRobot() {
  if (fDocks.empty()) return;
  const auto current = std::find_if(fDocks.begin(), fDocks.end(), [](const RobotDock* dock) {
    return dock->isAncestorOf(QApplication::focusWidget());
  });
  (current != fDocks.end() ? *current : fDocks.back())->close();
}

// ---- the rest of the window

void MainWindow::buildHint() {
  fHint = new QWidget(this);
  fHintText = new QLabel(fHint);
  fHintText->setTextFormat(Qt::PlainText);
  fHintText->setAlignment(Qt::AlignCenter);
  fHintText->setWordWrap(true);
  auto* button = new QPushButton(tr("Connect to a robot..."), fHint);
  button->setDefault(true);
  connect(button, &QPushButton::clicked, this, &MainWindow::askForRobot);
  auto* layout = new QVBoxLayout(fHint);
  layout->addStretch(1);
  layout->addWidget(fHintText);
  layout->addSpacing(12);
  layout->addWidget(button, 0, Qt::AlignHCenter);
  layout->addStretch(1);
  setCentralWidget(fHint);
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
  fHintText->setText(error.isEmpty() ? tr("No robot is connected.") : error);
  const auto loaded = fCatalog->loaded().size();
  const auto failed = fCatalog->plugins().size() - loaded;
  QString summary = tr("Plug-ins: %1 loaded").arg(loaded);
  if (failed > 0) summary += tr(", %1 failed: see Help > Plug-ins").arg(failed);
  fSummary = new QLabel(summary, this);
  statusBar()->addPermanentWidget(fSummary);
}

void MainWindow::restoreLayout() {
  resize(kDefaultSize.boundedTo(roomOnScreen(*this)));
  resizeDocks({fLogDock}, {kLogHeight}, Qt::Vertical);
  const QSettings settings;
  restoreGeometry(settings.value("Window/geometry").toByteArray());
  restoreState(settings.value("Window/state").toByteArray());
}

void MainWindow::closeEvent(QCloseEvent* event) {
  emit closing();
  QSettings settings;
  settings.setValue("Window/geometry", saveGeometry());
  settings.setValue("Window/state", saveState());
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

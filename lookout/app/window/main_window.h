// SPDX-License-Identifier: Apache-2.0
// The window "Lookout".
#pragma once

#include <QMainWindow>
#include <memory>
#include <optional>

#include "ky/address.h"
#include "plugins/plugin_catalog.h"
#include "robots/broker_closer.h"

namespace Lookout {

class LogPanel;
class PaintWhileWaiting;
class RobotArea;
class RobotDock;

// Holds a dock a robot and the log panel. GUI thread.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // Whether the window stands where it stood last time, and is remembered for the next time.
  enum class Layout { Remembered, Standard };

  // Loads the plug-ins of a folder; `icons` ends with a slash and is handed to them.
  MainWindow(const QString& plugins, QString icons, Layout layout = Layout::Remembered,
             QWidget* parent = nullptr);
  ~MainWindow() override;

  // Docks a robot and returns at once; the connection is made later. A robot that is docked
  // already is brought to the front, or docked anew when it is to be encrypted now and was not, or
  // the other way round. Null when no plug-in shows robots: a message says so.
  RobotDock* connectTo(const Ky::KyAddress& robot);
  // Docks a widget that needs no robot.
  RobotDock* open(const Plugin& plugin);

  const PluginCatalog& catalog() const { return *fCatalog; }
  const RobotArea& robots() const { return *fRobots; }
  const LogPanel& logPanel() const { return *fLog; }

 public slots:
  void askForRobot();
  void closeCurrentRobot();
  void showPlugins();
  void showPreferences();
  void showAbout();

 signals:
  // The window is about to close, with all its robots still there.
  void closing();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildRobots();
  void buildLog();
  void buildMenus();
  void showCatalog();
  void restoreLayout();
  void saveLayout() const;
  RobotDock* dock(const Plugin& plugin, std::optional<Ky::KyAddress> robot);
  void grow(const QSize& by);

  BrokerCloser fCloser;
  std::unique_ptr<PluginCatalog> fCatalog;  // made when the log listens
  const QString fIcons;
  const Layout fLayout;
  RobotArea* fRobots = nullptr;
  LogPanel* fLog = nullptr;
  QDockWidget* fLogDock = nullptr;
  QAction* fCloseRobot = nullptr;
  std::unique_ptr<PaintWhileWaiting> fPainting;
};

}  // namespace Lookout

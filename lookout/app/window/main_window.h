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
class PicturesMenu;
class RobotArea;
class RobotDock;

// Holds a dock for each plug-in of a robot, and the log panel. GUI thread.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // Whether the window stands where it stood last time, and shows robots as they were left then,
  // and is remembered for the next time.
  enum class Past { Remembered, Ignored };

  // Loads the plug-ins of a folder; `icons` ends with a slash and is handed to them.
  MainWindow(const QString& plugins, QString icons, Past past = Past::Remembered,
             QWidget* parent = nullptr);
  ~MainWindow() override;

  // Docks a robot and returns at once; the connection is made later. The plug-ins that show it are
  // those named or, when none of them is there, those that did so last time or the usual one. A
  // robot that is docked already is brought to the front, or docked anew when it is to be encrypted
  // now and was not, or the other way round. Returns the first of its docks; null when no plug-in
  // shows robots: a message says so.
  RobotDock* connectTo(const Ky::KyAddress& robot, const QStringList& plugins = {});
  // Docks one plug-in for a robot, or brings it to the front when it is there.
  RobotDock* openFor(const Ky::KyAddress& robot, const Plugin& plugin);
  // How the robot's pictures come: one of pictureWords(). Holds for all its docks, those to come
  // included, at once.
  void choosePictures(const QString& robot, const QString& word);
  // Docks a widget that needs no robot.
  RobotDock* open(const Plugin& plugin);

  const PluginCatalog& catalog() const { return *fCatalog; }
  const RobotArea& robots() const { return *fRobots; }
  const LogPanel& logPanel() const { return *fLog; }

 public slots:
  void askForRobot();
  // With all its plug-ins.
  void closeCurrentRobot();
  // The current view, which is opened where there is none, fills the screen, or no more.
  void toggleFullScreen();
  void showPlugins();
  void showPreferences();
  void showAbout();

 signals:
  // The window is about to close, with all its robots still there.
  void closing();

 protected:
  void closeEvent(QCloseEvent* event) override;
  // F11, where nobody else wants it.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void buildRobots();
  void buildLog();
  void buildMenus();
  void buildViewsMenu(QAction* log);
  void showCatalog();
  void restoreLayout();
  void saveLayout() const;
  RobotDock* dock(const Plugin& plugin, std::optional<Ky::KyAddress> robot);
  QByteArray placesToKeep(const QString& robot) const;
  void keepPlaces(const QString& robot, const QByteArray& places) const;
  bool takesUpThePast() const;
  QString picturesOf(const QString& robot) const;
  std::vector<const Plugin*> chosen(const QString& robot, const QStringList& plugins) const;
  QStringList openPlugins(const QString& robot) const;
  void remember(const QString& robot, const QStringList& plugins) const;
  bool hasChoice() const { return fCatalog->allForRobots().size() > 1; }
  QMenu* menuOfPlugins(const Ky::KyAddress& robot);
  void listPlugins(QMenu& menu, const Ky::KyAddress& robot);
  void nameCurrentRobot();
  void grow(const QSize& by);

  BrokerCloser fCloser;
  std::unique_ptr<PluginCatalog> fCatalog;  // made when the log listens
  const QString fIcons;
  Past fPast;
  RobotArea* fRobots = nullptr;
  LogPanel* fLog = nullptr;
  QDockWidget* fLogDock = nullptr;
  QMenu* fPluginsOfRobot = nullptr;
  PicturesMenu* fPictures = nullptr;
  QAction* fCloseRobot = nullptr;
  std::unique_ptr<PaintWhileWaiting> fPainting;
};

}  // namespace Lookout

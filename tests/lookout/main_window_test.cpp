// SPDX-License-Identifier: Apache-2.0
#include "window/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTimer>

#include "log/log_panel.h"
#include "robots/lost_veil.h"
#include "robots/remembered_robots.h"
#include "robots/robot_dock.h"
#include "robots/status_line.h"
#include "settings_of_test.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "window/preferences_dialog.h"
#include "window/robot_area.h"

using namespace Lookout;
using State = RobotSession::State;

namespace {

struct Window {
  explicit Window(const QString& plugins = FIXTURES "/good",
                  MainWindow::Past past = MainWindow::Past::Ignored)
      : window(plugins, "/icons/", past) {
    window.show();
  }

  // Docks a robot and waits until it is connected.
  RobotDock* dock(const TcpRobot& robot) {
    RobotDock* dock = window.connectTo(robot.address());
    EXPECT_TRUE(waitFor(*dock, State::Connected));
    return dock;
  }
  static bool waitFor(const RobotDock& dock, State state) {
    return waitUntil([&] { return dock.session().state() == state; });
  }
  bool logShows(const QString& text) const {
    const LogModel& model = window.logPanel().model();
    for (int row = 0; row < model.rowCount(); ++row)
      if (model.line(row).contains(text)) return true;
    return false;
  }
  bool hintIsShown() const { return window.robots().centralWidget()->isVisible(); }
  QAction* action(const QString& text) const {
    for (QAction* found : window.findChildren<QAction*>())
      if (found->text() == text) return found;
    return nullptr;
  }

  SettingsOfTest settings;
  MainWindow window;
};

QString placeholderOf(const RobotDock& dock) {
  for (const QLabel* label : dock.findChildren<QLabel*>())
    if (label->text().startsWith("Connecting to ")) return label->text();
  return {};
}

}  // namespace

TEST(MainWindow, HintsAtWhatToDoWhileThereIsNoRobot) {
  const Window on;
  EXPECT_EQ(on.window.windowTitle(), "Lookout");
  EXPECT_TRUE(on.hintIsShown());
  EXPECT_FALSE(on.action("C&lose robot")->isEnabled());
}

TEST(MainWindow, HoldsAViewerWithoutScrolling) {
  const Window on;
  EXPECT_GE(on.window.robots().width(), 950);
  EXPECT_GE(on.window.robots().height(), 660);
}

TEST(MainWindow, DocksARobotUnderItsPluginAndAddress) {
  const TcpRobot robot;
  Window on;
  RobotDock* dock = on.window.connectTo(robot.address());
  EXPECT_EQ(dock->windowTitle(), "working_plugin " + robot.name() + " (connecting)");
  EXPECT_TRUE(placeholderOf(*dock).startsWith("Connecting to " + robot.name()));
  EXPECT_FALSE(on.hintIsShown());

  ASSERT_TRUE(Window::waitFor(*dock, State::Connected));
  EXPECT_EQ(dock->windowTitle(), "working_plugin " + robot.name());
  EXPECT_TRUE(dock->session().widget()->isVisible());
  EXPECT_TRUE(dock->features() & QDockWidget::DockWidgetClosable);
  EXPECT_TRUE(dock->features() & QDockWidget::DockWidgetFloatable);
  EXPECT_TRUE(dock->findChild<StatusLine*>()->text().contains("Connected"));
  EXPECT_FALSE(dock->findChild<StatusLine*>()->text().contains("not encrypted"));
  EXPECT_TRUE(waitUntil([&] { return on.logShows("connected to " + robot.name()); }));
}

TEST(MainWindow, SaysInTheDockWhyARobotCannotBeReached) {
  Window on;
  TcpRobot robot;
  robot.stop();
  RobotDock* dock = on.window.connectTo(robot.address());
  EXPECT_TRUE(waitUntil([&] { return placeholderOf(*dock).contains("nobody listens there"); }));
}

TEST(MainWindow, SaysInTheDockThatThereIsNoComputerOfThatName) {
  Window on;
  const RobotDock* dock = on.window.connectTo({std::string(70, 'x'), 9559});
  EXPECT_TRUE(waitUntil([&] { return placeholderOf(*dock).contains("no computer of this name"); }));
}

TEST(MainWindow, ReachesARobotWithoutKeysOnceThatIsChosen) {
  const QTemporaryDir config;
  qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
  Ky::KyKeyStore(Ky::KyKeyStore::defaultFolder()).create();
  const TcpRobot robot("0.0.0.0");
  Window on;
  const QPointer<RobotDock> first(on.window.connectTo(robot.address()));
  EXPECT_TRUE(waitUntil(
      [&] { return placeholderOf(*first).contains("connect to it without encryption"); }));
  EXPECT_FALSE(first->isExposed());

  QTimer::singleShot(0, [&] {
    auto* dialog = QApplication::activeModalWidget();
    dialog->findChild<QLineEdit*>("address")->setText(robot.name());
    dialog->findChild<QCheckBox*>("unencrypted")->click();
    QMetaObject::invokeMethod(dialog, "accept");
  });
  on.window.askForRobot();
  EXPECT_TRUE(RememberedRobots::isUnencrypted(robot.name()));
  ASSERT_EQ(on.window.robots().docks().size(), 1u);
  const RobotDock* dock = on.window.robots().docks().front();
  ASSERT_TRUE(Window::waitFor(*dock, State::Connected));
  EXPECT_EQ(dock->windowTitle(), "working_plugin " + robot.name() + ", not encrypted");
  EXPECT_TRUE(dock->findChild<StatusLine*>()->text().contains("not encrypted"));
  EXPECT_TRUE(waitUntil([&] { return first.isNull(); }));
}

TEST(MainWindow, SaysInTheDockWhyThePluginFails) {
  const TcpRobot robot;
  Window on(FIXTURES "/throwing");
  RobotDock* dock = on.window.connectTo(robot.address());
  EXPECT_TRUE(waitUntil([&] { return placeholderOf(*dock).contains("this robot has no eyes"); }));
}

TEST(MainWindow, MarksALostRobotUntilItIsBack) {
  TcpRobot robot;
  Window on;
  RobotDock* dock = on.dock(robot);
  auto* veil = dock->findChild<LostVeil*>();
  EXPECT_FALSE(veil->isVisible());

  robot.stop();
  ASSERT_TRUE(Window::waitFor(*dock, State::Lost));
  EXPECT_TRUE(veil->isVisible());
  EXPECT_TRUE(veil->text().startsWith("Connection lost: "));
  EXPECT_TRUE(veil->text().endsWith(". Reconnecting..."));
  EXPECT_EQ(veil->size(), veil->parentWidget()->size());
  EXPECT_EQ(dock->windowTitle(), "working_plugin " + robot.name() + " (connection lost)");
  EXPECT_TRUE(dock->findChild<StatusLine*>()->text().contains("Connection lost"));

  robot.start();
  ASSERT_TRUE(Window::waitFor(*dock, State::Connected));
  EXPECT_FALSE(veil->isVisible());
  EXPECT_EQ(dock->findChild<QScrollArea*>()->widget(), dock->session().widget());
}

TEST(MainWindow, DarkensAStalledPicture) {
  TcpRobot robot;
  Window on;
  RobotDock* dock = on.dock(robot);
  const QWidget* widget = dock->session().widget();
  const auto lightness = [&] {
    const QPoint inWindow = widget->mapTo(&on.window, QPoint(5, widget->height() - 5));
    return on.window.grab().toImage().pixelColor(inWindow).lightness();
  };
  const int before = lightness();
  robot.stop();
  ASSERT_TRUE(Window::waitFor(*dock, State::Lost));
  EXPECT_LT(lightness(), before * 2 / 3);
}

TEST(MainWindow, ClosesADockInEveryState) {
  TcpRobot robot;
  Window on;
  const auto close = [&](RobotDock* dock) {
    const QPointer<RobotDock> gone(dock);
    dock->close();
    EXPECT_TRUE(waitUntil([&] { return gone.isNull(); }));
    EXPECT_TRUE(on.window.robots().docks().empty());
    EXPECT_TRUE(on.hintIsShown());
  };
  close(on.window.connectTo(robot.address()));
  close(on.dock(robot));
  RobotDock* dock = on.dock(robot);
  robot.stop();
  ASSERT_TRUE(Window::waitFor(*dock, State::Lost));
  close(dock);
  dock = on.window.connectTo(robot.address());
  ASSERT_TRUE(waitUntil([&] { return !dock->session().problem().isEmpty(); }));
  close(dock);
}

TEST(MainWindow, ClosesWithRobotsInEveryState) {
  TcpRobot lost;
  const TcpRobot connected;
  Window on;
  RobotDock* dock = on.dock(lost);
  lost.stop();
  ASSERT_TRUE(Window::waitFor(*dock, State::Lost));
  on.dock(connected);
  on.window.connectTo({"127.0.0.1", 1});
  on.window.close();
}

TEST(MainWindow, ShowsSeveralRobotsSideBySide) {
  const TcpRobot first, second, third;
  Window on;
  const RobotDock* one = on.dock(first);
  const RobotDock* two = on.dock(second);
  const RobotDock* three = on.dock(third);
  EXPECT_EQ(on.window.robots().docks().size(), 3u);
  for (const RobotDock* dock : {one, two, three}) {
    const QWidget* widget = dock->session().widget();
    EXPECT_TRUE(
        waitUntil([&] { return widget->visibleRegion().boundingRect() == widget->rect(); }));
  }
}

TEST(MainWindow, GrowsUntilAllViewersAreSeenWhole) {
  const TcpRobot first, second;
  Window on;
  on.window.resize(400, 500);
  QList<RobotDock*> docks = {on.window.connectTo(first.address()),
                             on.window.connectTo(second.address())};
  for (RobotDock* dock : docks) ASSERT_TRUE(Window::waitFor(*dock, State::Connected));
  for (const RobotDock* dock : docks) {
    const QWidget* widget = dock->session().widget();
    EXPECT_TRUE(
        waitUntil([&] { return widget->visibleRegion().boundingRect() == widget->rect(); }));
  }
}

TEST(MainWindow, GrowsForAViewerInTheTabBehind) {
  const TcpRobot robot;
  Window on;
  const auto isWhole = [](const QWidget* widget) {
    return widget->visibleRegion().boundingRect() == widget->rect();
  };
  RobotDock* viewer = on.dock(robot);
  const QWidget* widget = viewer->session().widget();
  ASSERT_TRUE(waitUntil([&] { return isWhole(widget); }));
  on.window.resize(300, 300);
  ASSERT_TRUE(waitUntil([&] { return !isWhole(widget); }));

  on.action("&Open robotless_plugin")->trigger();
  RobotDock* small = on.window.robots().docks().back();
  on.window.findChild<RobotArea*>()->tabifyDockWidget(viewer, small);
  small->raise();
  ASSERT_TRUE(Window::waitFor(*small, State::Connected));
  viewer->raise();
  EXPECT_TRUE(waitUntil([&] { return isWhole(widget); }));
}

TEST(MainWindow, DocksARobotOnlyOnce) {
  const TcpRobot robot;
  Window on;
  RobotDock* dock = on.dock(robot);
  EXPECT_EQ(on.window.connectTo(robot.address()), dock);
  EXPECT_EQ(on.window.robots().docks().size(), 1u);
}

TEST(MainWindow, KeepsTheOthersWhenOneRobotIsClosed) {
  const TcpRobot first, second;
  Window on;
  const QPointer<RobotDock> one(on.dock(first));
  const RobotDock* two = on.dock(second);
  one->setFloating(true);
  one->close();
  ASSERT_TRUE(waitUntil([&] { return one.isNull(); }));
  EXPECT_EQ(two->session().state(), State::Connected);
  EXPECT_FALSE(on.hintIsShown());
  on.window.closeCurrentRobot();
  EXPECT_TRUE(waitUntil([&] { return on.window.robots().docks().empty(); }));
}

TEST(MainWindow, OpensAPluginThatNeedsNoRobot) {
  Window on;
  QAction* open = on.action("&Open robotless_plugin");
  ASSERT_NE(open, nullptr);
  open->trigger();
  ASSERT_EQ(on.window.robots().docks().size(), 1u);
  const RobotDock* dock = on.window.robots().docks().front();
  ASSERT_TRUE(Window::waitFor(*dock, State::Connected));
  EXPECT_EQ(dock->windowTitle(), "robotless_plugin");
  EXPECT_EQ(qobject_cast<QLabel*>(dock->session().widget())->text(), "'' 0");
  EXPECT_FALSE(dock->findChild<StatusLine*>()->isVisible());
}

TEST(MainWindow, SaysWhyThereIsNoPlugin) {
  Window on(FIXTURES "/broken");
  EXPECT_EQ(on.window.connectTo({"127.0.0.1", 9559}), nullptr);
  EXPECT_TRUE(on.window.statusBar()->currentMessage().startsWith("No plug-in in "));
  EXPECT_TRUE(waitUntil([&] { return on.logShows("functionThatNobodyDefines"); }));
  bool isSummed = false;
  for (const QLabel* label : on.window.statusBar()->findChildren<QLabel*>())
    isSummed = isSummed || label->text() == "Plug-ins: 0 loaded, 4 failed: see Help > Plug-ins";
  EXPECT_TRUE(isSummed);
}

TEST(MainWindow, RemembersTheRobotThatWasAskedFor) {
  const TcpRobot robot;
  Window on;
  RememberedRobots::remember(robot.name());
  RememberedRobots::remember("other:1");
  QTimer::singleShot(0, [&] {
    auto* dialog = QApplication::activeModalWidget();
    dialog->findChild<QLineEdit*>("address")->setText(robot.name());
    QMetaObject::invokeMethod(dialog, "accept");
  });
  on.window.askForRobot();
  EXPECT_EQ(RememberedRobots::all(), (QStringList{robot.name(), "other:1"}));
  ASSERT_EQ(on.window.robots().docks().size(), 1u);
  EXPECT_EQ(on.window.robots().docks().front()->robotName(), robot.name());
}

TEST(MainWindow, StandsWhereItStoodLastTimeUnlessAScriptDrivesIt) {
  const SettingsOfTest settings;
  const auto sizeAfterResizing = [](MainWindow::Past first, MainWindow::Past second) {
    {
      MainWindow window(FIXTURES "/good", "", first);
      window.show();
      window.resize(777, 555);
      window.close();
    }
    const MainWindow next(FIXTURES "/good", "", second);
    return next.size();
  };
  using Past = MainWindow::Past;
  EXPECT_NE(sizeAfterResizing(Past::Ignored, Past::Remembered), QSize(777, 555));
  EXPECT_EQ(sizeAfterResizing(Past::Remembered, Past::Remembered), QSize(777, 555));
  EXPECT_NE(sizeAfterResizing(Past::Remembered, Past::Ignored), QSize(777, 555));
}

TEST(PreferencesDialog, KeepsRemoteControlWherePluginsReadIt) {
  const SettingsOfTest settings;
  {
    PreferencesDialog dialog;
    auto* box = dialog.findChild<QCheckBox*>("remoteControl");
    EXPECT_EQ(box->text().remove('&'), "Remote control (suppress error dialogs)");
    EXPECT_FALSE(box->isChecked());
    box->setChecked(true);
    dialog.reject();
    EXPECT_FALSE(QSettings().value("Preferences/remoteControl", false).toBool());
    dialog.accept();
  }
  EXPECT_TRUE(QSettings().value("Preferences/remoteControl", false).toBool());
  const PreferencesDialog again;
  EXPECT_TRUE(again.findChild<QCheckBox*>("remoteControl")->isChecked());
}

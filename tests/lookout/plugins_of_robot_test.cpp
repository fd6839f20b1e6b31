// SPDX-License-Identifier: Apache-2.0
// Several plug-ins show one robot.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>

#include "robots/remembered_robots.h"
#include "robots/robot_dock.h"
#include "robots/robot_memory.h"
#include "settings_of_test.h"
#include "several_plugins.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "window/main_window.h"
#include "window/robot_area.h"

using namespace Lookout;
using Past = MainWindow::Past;
using State = RobotSession::State;

namespace {

struct Plugins {
  SettingsOfTest settings;
  SeveralPlugins folder{{"a_plugin", "b_plugin", "periscope"}};
};

struct Window {
  explicit Window(const Plugins& plugins, Past past = Past::Remembered)
      : window(plugins.folder.path(), "/icons/", past) {
    window.show();
  }

  // What is open, by plug-in and robot, in the order of the docks.
  QStringList open() const {
    QStringList names;
    for (const RobotDock* dock : window.robots().docks()) names << dock->name();
    return names;
  }
  RobotDock* dock(const QString& name) const {
    for (RobotDock* dock : window.robots().docks())
      if (dock->name() == name) return dock;
    return nullptr;
  }
  bool areAll(State state) const {
    return waitUntil([&] {
      for (const RobotDock* dock : window.robots().docks())
        if (dock->session().state() != state) return false;
      return true;
    });
  }
  void closeAll() {
    for (RobotDock* dock : std::vector(window.robots().docks())) dock->close();
    EXPECT_TRUE(waitUntil([&] { return window.robots().docks().empty(); }));
  }
  QMenu* robotMenu() const { return window.menuBar()->actions().front()->menu(); }
  // "Plu&g-ins" of the current robot.
  QMenu* pluginsMenu() const {
    emit robotMenu()->aboutToShow();
    for (const QAction* action : robotMenu()->actions())
      if (action->text().startsWith("Plu&g-ins")) return action->menu();
    return nullptr;
  }

  MainWindow window;
};

QMenu* cornerMenu(const RobotDock& dock) {
  const auto* button = dock.findChild<QToolButton*>("plugins");
  return button->isHidden() ? nullptr : button->menu();
}

QStringList entries(QMenu* menu) {
  emit menu->aboutToShow();
  QStringList texts;
  for (const QAction* action : menu->actions()) texts << action->text();
  return texts;
}

void choose(QMenu* menu, const QString& text) {
  emit menu->aboutToShow();
  for (QAction* action : menu->actions())
    if (action->text() == text) return action->trigger();
  ADD_FAILURE() << "no entry " << text.toStdString();
}

}  // namespace

TEST(PluginsOfRobot, OpenTheUsualOneAlone) {
  const Plugins plugins;
  const TcpRobot robot;
  Window on(plugins);
  EXPECT_EQ(on.window.connectTo(robot.address())->pluginName(), "periscope");
  EXPECT_EQ(on.open(), QStringList{"periscope " + robot.name()});
}

TEST(PluginsOfRobot, OpenInADockWithAConnectionEach) {
  const Plugins plugins;
  const TcpRobot robot;
  Window on(plugins);
  RobotDock* first = on.window.connectTo(robot.address(), {"b_plugin", "periscope"});
  EXPECT_EQ(first->pluginName(), "b_plugin");
  EXPECT_EQ(on.open(), (QStringList{"b_plugin " + robot.name(), "periscope " + robot.name()}));
  ASSERT_TRUE(on.areAll(State::Connected));
  RobotDock* second = on.dock("periscope " + robot.name());
  EXPECT_NE(first->objectName(), second->objectName());
  EXPECT_EQ(second->windowTitle(), "periscope " + robot.name());

  first->close();
  ASSERT_TRUE(waitUntil([&] { return on.open().size() == 1; }));
  EXPECT_EQ(second->session().state(), State::Connected);
  EXPECT_TRUE(second->session().widget()->isVisible());
}

TEST(PluginsOfRobot, OpenOnceEach) {
  const Plugins plugins;
  const TcpRobot robot;
  Window on(plugins);
  RobotDock* first = on.window.connectTo(robot.address(), {"a_plugin", "b_plugin"});
  EXPECT_EQ(on.window.connectTo(robot.address()), first);
  EXPECT_EQ(on.window.connectTo(robot.address(), {"a_plugin"}), first);
  EXPECT_EQ(on.open().size(), 2);
  on.window.connectTo(robot.address(), {"periscope"});
  EXPECT_EQ(on.open().size(), 3);
}

TEST(PluginsOfRobot, AreOfferedInTheCornerOfEachDock) {
  const Plugins plugins;
  const TcpRobot robot;
  Window on(plugins);
  RobotDock* first = on.window.connectTo(robot.address());
  QMenu* menu = cornerMenu(*first);
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(entries(menu), (QStringList{"Open a_plugin", "Open b_plugin", "periscope (open)"}));
  choose(menu, "Open b_plugin");
  EXPECT_EQ(on.open(), (QStringList{"periscope " + robot.name(), "b_plugin " + robot.name()}));
  EXPECT_EQ(entries(menu), (QStringList{"Open a_plugin", "b_plugin (open)", "periscope (open)"}));
  choose(menu, "b_plugin (open)");
  EXPECT_EQ(on.open().size(), 2);
  EXPECT_NE(cornerMenu(*on.dock("b_plugin " + robot.name())), nullptr);
}

TEST(PluginsOfRobot, AreOfferedInTheMenuForTheRobotThatIsCurrent) {
  const Plugins plugins;
  const TcpRobot one, two;
  Window on(plugins);
  EXPECT_FALSE(on.pluginsMenu()->isEnabled());
  RobotDock* first = on.window.connectTo(one.address());
  on.window.connectTo(two.address());
  EXPECT_EQ(on.pluginsMenu()->title(), "Plu&g-ins of " + two.name());
  choose(on.pluginsMenu(), "Open a_plugin");
  EXPECT_NE(on.dock("a_plugin " + two.name()), nullptr);

  QApplication::setActiveWindow(&on.window);
  cornerMenu(*first)->parentWidget()->setFocus();
  QLabel elsewhere("the log, say", &on.window);
  elsewhere.setFocusPolicy(Qt::StrongFocus);
  elsewhere.show();
  elsewhere.setFocus();
  ASSERT_EQ(QApplication::focusWidget(), &elsewhere);
  EXPECT_EQ(on.pluginsMenu()->title(), "Plu&g-ins of " + one.name());
  choose(on.pluginsMenu(), "Open b_plugin");
  EXPECT_NE(on.dock("b_plugin " + one.name()), nullptr);
}

TEST(PluginsOfRobot, AreNotOfferedWhereThereIsNoChoice) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  MainWindow window(FIXTURES "/good", "", Past::Ignored);
  window.show();
  EXPECT_EQ(cornerMenu(*window.connectTo(robot.address())), nullptr);
  for (const QAction* action : window.menuBar()->actions().front()->menu()->actions())
    EXPECT_FALSE(action->isVisible() && action->text().contains("lug-ins"));
}

TEST(PluginsOfRobot, OpenAgainInTheNextRun) {
  const Plugins plugins;
  const TcpRobot robot, other;
  {
    Window on(plugins);
    on.window.connectTo(robot.address(), {"b_plugin", "a_plugin", "periscope"});
    on.window.connectTo(other.address());
    on.dock("a_plugin " + robot.name())->close();
    on.dock("periscope " + robot.name())->setFloating(true);
    on.window.close();
    on.dock("periscope " + robot.name())->close();  // as Qt does when the program ends
  }
  Window on(plugins);
  on.window.connectTo(robot.address());
  EXPECT_EQ(on.open(), (QStringList{"b_plugin " + robot.name(), "periscope " + robot.name()}));
  on.window.connectTo(other.address());
  EXPECT_EQ(on.open().last(), "periscope " + other.name());
}

TEST(PluginsOfRobot, OpenAgainTogetherWhenTheirRobotWasClosed) {
  const Plugins plugins;
  const TcpRobot robot;
  Window on(plugins);
  on.window.connectTo(robot.address(), {"b_plugin", "a_plugin"});
  on.window.closeCurrentRobot();
  ASSERT_TRUE(waitUntil([&] { return on.open().isEmpty(); }));
  on.window.connectTo(robot.address());
  EXPECT_EQ(on.open().size(), 2);
  // One by one is another matter: the last is what is left.
  on.closeAll();
  on.window.connectTo(robot.address());
  EXPECT_EQ(on.open(), QStringList{"a_plugin " + robot.name()});
}

TEST(PluginsOfRobot, AreForgottenWithTheirRobot) {
  const Plugins plugins;
  const TcpRobot robot;
  RememberedRobots::remember(robot.name());
  Window on(plugins);
  on.window.connectTo(robot.address(), {"b_plugin"});
  on.window.closeCurrentRobot();
  RememberedRobots::forget(robot.name());
  EXPECT_TRUE(RobotMemory::plugins(robot.name()).isEmpty());
  EXPECT_EQ(on.window.connectTo(robot.address())->pluginName(), "periscope");
}

TEST(PluginsOfRobot, AreTheUsualOnesWhereThoseOfLastTimeAreGone) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setPlugins(robot.name(), {"gone", "robotless_plugin"});
  Window on(plugins);
  EXPECT_EQ(on.window.connectTo(robot.address())->pluginName(), "periscope");
}

TEST(PluginsOfRobot, DoNotDependOnThePastInAScript) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setPlugins(robot.name(), {"a_plugin"});
  Window on(plugins, Past::Ignored);
  EXPECT_EQ(on.window.connectTo(robot.address())->pluginName(), "periscope");
  EXPECT_EQ(RobotMemory::plugins(robot.name()), QStringList{"a_plugin"});
}

TEST(RobotMemory, KeepsTheRobotsThatWereShownLast) {
  const SettingsOfTest settings;
  RobotMemory::setPlugins("[::1]:1", {"first"});
  for (int i = 0; i < RobotMemory::kMost; ++i) {
    EXPECT_EQ(RobotMemory::plugins("[::1]:1"), QStringList{"first"});
    RobotMemory::setPlugins("a/b:" + QString::number(i), {"a", "b"});
  }
  EXPECT_TRUE(RobotMemory::plugins("[::1]:1").isEmpty());
  EXPECT_EQ(RobotMemory::plugins("a/b:0"), (QStringList{"a", "b"}));
  RobotMemory::forget("a/b:0");
  EXPECT_TRUE(RobotMemory::plugins("a/b:0").isEmpty());
  EXPECT_EQ(RobotMemory::plugins("a/b:1"), (QStringList{"a", "b"}));
}

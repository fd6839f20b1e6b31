// SPDX-License-Identifier: Apache-2.0
// A robot's widget goes on in the next run where it was left in this one.
#include "robots/widget_keeper.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QSettings>

#include "lookout/lookout_widget.h"
#include "robots/remembered_robots.h"
#include "robots/robot_dock.h"
#include "settings_of_test.h"
#include "several_plugins.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "window/main_window.h"
#include "window/preferences_dialog.h"
#include "window/robot_area.h"

using namespace Lookout;
using Past = MainWindow::Past;
using State = RobotSession::State;

namespace {

struct Plugins {
  SettingsOfTest settings;
  SeveralPlugins folder{{"a_plugin", "b_plugin"}, FIXTURES "/remembering/remembering_plugin.so"};
};

// One run of the program.
struct ProgramRun {
  explicit ProgramRun(const Plugins& plugins, Past past = Past::Remembered)
      : window(plugins.folder.path(), "", past) {
    window.show();
  }
  ~ProgramRun() { window.close(); }

  RobotDock* dock(const TcpRobot& robot, const QString& plugin = "a_plugin") {
    for (RobotDock* dock : window.robots().docksOf(robot.name()))
      if (dock->pluginName() == plugin) return dock;
    return nullptr;
  }
  // As it was when the host had made it.
  LookoutWidget* widget(const TcpRobot& robot, const QString& plugin = "a_plugin") {
    window.connectTo(robot.address(), {plugin});
    const RobotSession& session = dock(robot, plugin)->session();
    EXPECT_TRUE(waitUntil([&] { return session.state() == State::Connected; }));
    return qobject_cast<LookoutWidget*>(session.widget());
  }
  WidgetMemory memory(const TcpRobot& robot, const QString& plugin = "a_plugin") {
    const LookoutWidget* shown = widget(robot, plugin);
    return {shown->saveState(), shown->isPlaying()};
  }

  MainWindow window;
};

const WidgetMemory kUntouched{"", false};

// As a user would.
void touch(LookoutWidget* widget, const QByteArray& state, bool playing) {
  widget->restoreState(state);
  widget->setPlaying(playing);
}

}  // namespace

TEST(WidgetKeeper, LetsTheNextRunGoOnWhereTheWindowWasClosed) {
  const Plugins plugins;
  const TcpRobot robot;
  {
    ProgramRun first(plugins);
    EXPECT_EQ(first.memory(robot), kUntouched);
    touch(first.widget(robot), "7", true);
  }
  {
    ProgramRun second(plugins);
    EXPECT_EQ(second.memory(robot), (WidgetMemory{"7", true}));
    touch(second.widget(robot), "8", false);
  }
  EXPECT_EQ(ProgramRun(plugins).memory(robot), (WidgetMemory{"8", false}));
}

TEST(WidgetKeeper, KeepsWhatADockShowedWhenItWasClosed) {
  const Plugins plugins;
  const TcpRobot robot;
  ProgramRun run(plugins);
  touch(run.widget(robot), "3", true);
  run.dock(robot)->close();
  EXPECT_EQ(RobotMemory::widget(robot.name(), "a_plugin"), (WidgetMemory{"3", true}));
  ASSERT_TRUE(waitUntil([&] { return run.window.robots().docks().empty(); }));
  EXPECT_EQ(run.memory(robot), (WidgetMemory{"3", true}));
}

TEST(WidgetKeeper, KeepsWhatWasShownWhenTheRobotIsLost) {
  const Plugins plugins;
  TcpRobot robot;
  ProgramRun run(plugins);
  touch(run.widget(robot), "4", true);
  robot.stop();
  ASSERT_TRUE(waitUntil([&] { return RobotMemory::widget(robot.name(), "a_plugin").has_value(); }));
  EXPECT_EQ(RobotMemory::widget(robot.name(), "a_plugin"), (WidgetMemory{"4", true}));
  run.window.close();
  EXPECT_EQ(RobotMemory::widget(robot.name(), "a_plugin"), (WidgetMemory{"4", true}));
}

TEST(WidgetKeeper, KeepsRobotsAndPluginsApart) {
  const Plugins plugins;
  const TcpRobot one, two;
  {
    ProgramRun run(plugins);
    touch(run.widget(one, "a_plugin"), "1", false);
    touch(run.widget(one, "b_plugin"), "2", true);
    touch(run.widget(two, "b_plugin"), "3", false);
  }
  ProgramRun run(plugins);
  EXPECT_EQ(run.memory(one, "a_plugin"), (WidgetMemory{"1", false}));
  EXPECT_EQ(run.memory(one, "b_plugin"), (WidgetMemory{"2", true}));
  EXPECT_EQ(run.memory(two, "a_plugin"), kUntouched);
  EXPECT_EQ(run.memory(two, "b_plugin"), (WidgetMemory{"3", false}));
}

TEST(WidgetKeeper, KeepsNothingOfAWidgetThatNobodyTouchedOrThatNeverWas) {
  const Plugins plugins;
  const TcpRobot robot;
  TcpRobot away;
  away.stop();
  {
    ProgramRun run(plugins);
    run.widget(robot);
    run.window.connectTo(away.address())->session().setPlaying(true);
  }
  EXPECT_EQ(RobotMemory::widget(robot.name(), "a_plugin"), std::nullopt);
  EXPECT_EQ(RobotMemory::widget(away.name(), "a_plugin"), std::nullopt);
}

TEST(WidgetKeeper, KeepsThatEverythingWasSetBack) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setWidget(robot.name(), "a_plugin", {"5", true});
  {
    ProgramRun run(plugins);
    touch(run.widget(robot), "0", false);
  }
  EXPECT_EQ(ProgramRun(plugins).memory(robot), kUntouched);
}

TEST(WidgetKeeper, PlaysWhenThatIsAskedForThoughItWasPaused) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setWidget(robot.name(), "a_plugin", {"5", false});
  ProgramRun run(plugins);
  run.window.connectTo(robot.address())->session().setPlaying(true);
  EXPECT_EQ(run.memory(robot), (WidgetMemory{"5", true}));
}

TEST(WidgetKeeper, IgnoresWhatIsNoStateWithOneLine) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setWidget(robot.name(), "a_plugin", {"of another version", false});
  LogCapture log;
  ProgramRun run(plugins);
  EXPECT_EQ(run.memory(robot), kUntouched);
  int lines = 0;
  for (const std::string& line : log.lines("lookout"))
    lines += line.starts_with("warning session: ") ? 1 : 0;
  EXPECT_EQ(lines, 1);
}

TEST(WidgetKeeper, IgnoresSettingsThatAreNone) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setWidget(robot.name(), "a_plugin", {"5", true});
  {
    QSettings settings;
    for (const QString& key : settings.allKeys())
      if (key.startsWith("Memory/")) settings.setValue(key, QStringList{"by", "hand"});
  }
  ProgramRun run(plugins);
  EXPECT_EQ(run.memory(robot).state, kUntouched.state);
}

TEST(WidgetKeeper, StartsFreshWhenThatIsPreferred) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setWidget(robot.name(), "a_plugin", {"5", true});
  RobotMemory::setPlugins(robot.name(), {"b_plugin"});
  QSettings().setValue("Preferences/startFresh", true);
  ProgramRun run(plugins);
  EXPECT_EQ(run.window.connectTo(robot.address())->pluginName(), "a_plugin");
  EXPECT_EQ(run.memory(robot), kUntouched);
  touch(run.widget(robot), "6", false);
  run.window.close();
  EXPECT_EQ(RobotMemory::widget(robot.name(), "a_plugin"), (WidgetMemory{"6", false}));
}

TEST(WidgetKeeper, NeitherReadsNorWritesForAScript) {
  const Plugins plugins;
  const TcpRobot robot;
  RobotMemory::setWidget(robot.name(), "a_plugin", {"5", true});
  {
    ProgramRun script(plugins, Past::Ignored);
    EXPECT_EQ(script.memory(robot), kUntouched);
    touch(script.widget(robot), "6", false);
  }
  EXPECT_EQ(RobotMemory::widget(robot.name(), "a_plugin"), (WidgetMemory{"5", true}));
}

TEST(WidgetKeeper, ForgetsWithTheRobot) {
  const Plugins plugins;
  const TcpRobot robot;
  RememberedRobots::remember(robot.name());
  RobotMemory::setWidget(robot.name(), "a_plugin", {"5", true});
  RememberedRobots::forget(robot.name());
  EXPECT_EQ(ProgramRun(plugins).memory(robot), kUntouched);
}

TEST(PreferencesDialog, KeepsThatEverythingStartsFresh) {
  const SettingsOfTest settings;
  EXPECT_FALSE(PreferencesDialog::startsFresh());
  {
    PreferencesDialog dialog;
    auto* box = dialog.findChild<QCheckBox*>("startFresh");
    EXPECT_EQ(box->text().remove('&'), "Start everything fresh");
    EXPECT_FALSE(box->isChecked());
    box->setChecked(true);
    dialog.reject();
    EXPECT_FALSE(PreferencesDialog::startsFresh());
    dialog.accept();
  }
  EXPECT_TRUE(PreferencesDialog::startsFresh());
  EXPECT_TRUE(PreferencesDialog().findChild<QCheckBox*>("startFresh")->isChecked());
}

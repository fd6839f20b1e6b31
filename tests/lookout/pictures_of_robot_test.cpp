// SPDX-License-Identifier: Apache-2.0
// The user chooses how a robot's pictures come.
#include <gtest/gtest.h>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

#include "lookout/widget_interface.h"
#include "robots/picture_choice.h"
#include "robots/remembered_robots.h"
#include "robots/robot_dock.h"
#include "robots/robot_memory.h"
#include "settings_of_test.h"
#include "several_plugins.h"
#include "support/scripted_module.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "window/main_window.h"
#include "window/pictures_menu.h"
#include "window/robot_area.h"

using namespace Lookout;
using Past = MainWindow::Past;

namespace {

struct CameraRobot : TcpRobot {
  explicit CameraRobot(const std::vector<std::string>& offers = {"openPictures"})
      : device(Ky::KyModule::createModule<ScriptedModule>(broker(), "KyVideoDevice",
                                                          std::make_shared<CallList>(), offers)) {}
  boost::shared_ptr<ScriptedModule> device;
};

struct Window {
  explicit Window(Past past = Past::Remembered) : window(plugins.path(), "/icons/", past) {
    window.show();
  }

  RobotDock* connect(const TcpRobot& robot, const QStringList& names = {}) {
    RobotDock* dock = window.connectTo(robot.address(), names);
    for (const RobotDock* each : window.robots().docksOf(robot.name()))
      EXPECT_TRUE(waitUntil([&] {
        return each->session().state() == RobotSession::State::Connected &&
               (!offers || each->session().offers("KyVideoDevice", "openPictures"));
      }));
    return dock;
  }
  PicturesMenu* menu() const {
    QMenu* robot = window.menuBar()->actions().front()->menu();
    emit robot->aboutToShow();
    return robot->findChild<PicturesMenu*>();
  }
  QAction* action(const QString& text) const {
    for (QAction* each : menu()->actions())
      if (each->text() == text) return each;
    ADD_FAILURE() << "no entry " << text.toStdString();
    return nullptr;
  }
  QStringList ticked() const {
    QStringList texts;
    for (const QAction* each : menu()->actions())
      if (each->isChecked()) texts << each->text();
    return texts;
  }
  // What the broker of a plug-in was told.
  std::string wordOf(const QString& plugin) const {
    return window.catalog().forRobots(plugin)->interface->broker()->preference(kPicturePreference);
  }

  SeveralPlugins plugins{{"a_plugin", "periscope"}};
  bool offers = true;  // whether the robots that are connected to send pictures by themselves
  MainWindow window;
};

}  // namespace

TEST(PicturesOfRobot, AreChosenInTheMenu) {
  const SettingsOfTest settings;
  const CameraRobot robot;
  Window on;
  on.connect(robot);
  EXPECT_EQ(on.menu()->title(), "Pict&ures of " + robot.name());
  QStringList texts;
  for (const QAction* action : on.menu()->actions()) {
    texts << action->text();
    EXPECT_TRUE(action->actionGroup()->isExclusive());
    EXPECT_GT(action->toolTip().size(), action->text().size());
    EXPECT_EQ(action->statusTip(), action->toolTip());
  }
  EXPECT_EQ(texts, (QStringList{"Automatic", "Exact", "Saving"}));
  EXPECT_EQ(on.ticked(), QStringList{"Automatic"});
  EXPECT_EQ(on.wordOf("periscope"), "automatic");

  on.action("Saving")->trigger();
  EXPECT_EQ(on.wordOf("periscope"), "saving");
  EXPECT_EQ(on.ticked(), QStringList{"Saving"});
}

TEST(PicturesOfRobot, AreTheSameForAllItsPluginsAndNoOtherRobot) {
  const SettingsOfTest settings;
  const CameraRobot robot, other;
  Window on;
  on.connect(robot, {"periscope"});
  on.action("Exact")->trigger();
  on.connect(robot, {"a_plugin"});
  EXPECT_EQ(on.wordOf("a_plugin"), "exact") << "opened later";
  on.action("Saving")->trigger();
  EXPECT_EQ(on.wordOf("a_plugin"), "saving");
  EXPECT_EQ(on.wordOf("periscope"), "saving");

  on.connect(other, {"periscope"});
  EXPECT_EQ(on.menu()->title(), "Pict&ures of " + other.name());
  EXPECT_EQ(on.ticked(), QStringList{"Automatic"});
  EXPECT_EQ(on.wordOf("periscope"), "automatic");
}

TEST(PicturesOfRobot, AreNoChoiceWhereTheRobotSendsNoneByItself) {
  const SettingsOfTest settings;
  const CameraRobot plain(std::vector<std::string>{});
  Window on;
  EXPECT_FALSE(on.menu()->isEnabled()) << "there is no robot";
  EXPECT_EQ(on.menu()->title(), "Pict&ures");
  on.offers = false;
  on.connect(plain);
  EXPECT_FALSE(on.menu()->isEnabled());
  on.offers = true;
  const CameraRobot robot;
  on.connect(robot);
  EXPECT_TRUE(on.menu()->isEnabled());
}

TEST(PicturesOfRobot, ComeInTheNextRunAsTheyDid) {
  const SettingsOfTest settings;
  const CameraRobot robot;
  {
    Window on;
    on.connect(robot);
    on.action("Exact")->trigger();
  }
  RememberedRobots::remember(robot.name());
  {
    Window on;
    on.connect(robot);
    EXPECT_EQ(on.wordOf("periscope"), "exact");
  }
  RememberedRobots::forget(robot.name());
  Window on;
  on.connect(robot);
  EXPECT_EQ(on.wordOf("periscope"), "automatic");
}

TEST(PicturesOfRobot, DoNotDependOnThePastInAScript) {
  const SettingsOfTest settings;
  const CameraRobot robot;
  RobotMemory::setPictures(robot.name(), "saving");
  Window on(Past::Ignored);
  on.connect(robot);
  EXPECT_EQ(on.wordOf("periscope"), "automatic");
  on.window.choosePictures(robot.name(), "exact");
  EXPECT_EQ(on.wordOf("periscope"), "exact");
  EXPECT_EQ(RobotMemory::pictures(robot.name()), "saving");
}

TEST(PicturesOfRobot, AreAutomaticWhereTheMemoryIsWrong) {
  const SettingsOfTest settings;
  const CameraRobot robot;
  RobotMemory::setPictures(robot.name(), "blurred");
  Window on;
  on.connect(robot);
  EXPECT_EQ(on.wordOf("periscope"), "automatic");
}

// SPDX-License-Identifier: Apache-2.0
// Views of robots in the window: menu, keys, wall, and what is remembered of them.
#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <set>

#include "robots/robot_dock.h"
#include "robots/robot_memory.h"
#include "robots/robot_views.h"
#include "robots/view_dock.h"
#include "settings_of_test.h"
#include "several_plugins.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "window/main_window.h"
#include "window/preferences_dialog.h"
#include "window/robot_area.h"

using namespace Lookout;
using Past = MainWindow::Past;
using State = RobotSession::State;

namespace {

struct Window {
  explicit Window(Past past = Past::Remembered, const QString& plugins = FIXTURES "/viewing")
      : window(plugins, "/icons/", past) {
    if (!QSettings().contains("Window/geometry")) window.resize(1400, 900);
    area().setAnimated(false);  // docks are where they go to at once
    window.show();
  }

  RobotDock* dock(const TcpRobot& robot) {
    RobotDock* dock = window.connectTo(robot.address());
    EXPECT_TRUE(waitUntil([&] { return dock->session().state() == State::Connected; }));
    return dock;
  }
  RobotArea& area() const { return *window.findChild<RobotArea*>(); }
  QMenu* menu() const {
    for (const QAction* action : window.menuBar()->actions())
      if (action->text() == "&View") return action->menu();
    return nullptr;
  }
  QAction* entry(const QString& text) const {
    emit menu()->aboutToShow();
    for (QAction* action : menu()->actions())
      if (action->text() == text) return action;
    return nullptr;
  }
  QStringList entries() const {
    emit menu()->aboutToShow();
    QStringList texts;
    for (const QAction* action : menu()->actions())
      if (!action->isSeparator()) texts << action->text();
    return texts;
  }
  std::vector<ViewDock*> views(const RobotDock& dock) const { return dock.views().docks(); }
  void close() {
    window.close();
    QCoreApplication::processEvents();
  }

  MainWindow window;
};

// What the two have in common is empty.
bool areApart(const QWidget& one, const QWidget& other) {
  return !one.geometry().intersects(other.geometry());
}

bool isInFront(const QWidget& dock) {
  return dock.isVisible() && !dock.visibleRegion().isEmpty();
}

QRect settled(const QWidget& dock) {
  for (int round = 0; round < 5; ++round) QCoreApplication::processEvents();
  return dock.geometry();
}

}  // namespace

TEST(ViewsMenu, OffersTheViewsOfTheRobotThatIsCurrent) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  Window on;
  EXPECT_EQ(on.entries(),
            (QStringList{"&Log", "&Stage", "&Another stage", "&Full screen\tF11", "&Wall"}));
  for (const char* text : {"&Stage", "&Another stage", "&Full screen\tF11", "&Wall"})
    EXPECT_FALSE(on.entry(text)->isEnabled()) << text;
  const RobotDock* dock = on.dock(robot);
  ASSERT_EQ(on.entries(), (QStringList{"&Log", "&Stage", "&Another stage", "F&iles",
                                       "&Full screen\tF11", "&Wall"}));
  on.entry("&Stage")->trigger();
  on.entry("&Stage")->trigger();
  EXPECT_EQ(on.views(*dock).size(), 1u);
  on.entry("&Another stage")->trigger();
  on.entry("F&iles")->trigger();
  ASSERT_EQ(on.views(*dock).size(), 3u);
  EXPECT_EQ(on.views(*dock)[2]->windowTitle(), "Files - viewing_plugin " + robot.name());
}

TEST(ViewsMenu, OffersNothingOfAPluginWithoutViews) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  Window on(Past::Remembered, FIXTURES "/good");
  on.dock(robot);
  EXPECT_FALSE(on.entry("&Stage")->isEnabled());
  EXPECT_FALSE(on.entry("&Full screen\tF11")->isEnabled());
  QTest::keyClick(&on.window, Qt::Key_F11);
  EXPECT_FALSE(on.window.isFullScreen());
  EXPECT_EQ(on.window.statusBar()->currentMessage(), "") << "nobody has asked for a view";
}

TEST(ViewsMenu, OpensForTheRobotWhoseViewHasTheKeyboard) {
  const SettingsOfTest settings;
  const TcpRobot one, two;
  Window on;
  const RobotDock* first = on.dock(one);
  const RobotDock* second = on.dock(two);
  ViewDock* view = first->views().open("stage");
  second->views().open("files");
  QApplication::setActiveWindow(&on.window);
  view->bringToFront();
  ASSERT_TRUE(view->holdsFocus());
  EXPECT_EQ(on.area().current(), first);
  EXPECT_EQ(on.area().currentView(), view);
  on.entry("F&iles")->trigger();
  EXPECT_EQ(on.views(*first).size(), 2u);
  EXPECT_EQ(on.views(*second).size(), 1u);
}

TEST(FullScreen, IsEnteredAndLeftByTheMenuAndByF11) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  Window on;
  const RobotDock* dock = on.dock(robot);
  on.entry("&Full screen\tF11")->trigger();
  ASSERT_EQ(on.views(*dock).size(), 1u) << "the first is opened";
  ViewDock* view = on.views(*dock).front();
  EXPECT_EQ(view->kind(), "stage");
  EXPECT_TRUE(view->fillsScreen());
  on.entry("&Full screen\tF11")->trigger();
  EXPECT_FALSE(view->fillsScreen());
  QTest::keyClick(&on.window, Qt::Key_F11);
  EXPECT_TRUE(view->fillsScreen());
  QTest::keyClick(view->view()->window(), Qt::Key_F11);
  EXPECT_TRUE(waitUntil([&] { return !view->fillsScreen(); }));
  EXPECT_FALSE(on.window.isFullScreen());
}

TEST(ViewsOfRobot, StandBesideItWhileThereIsRoom) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  Window on;
  const RobotDock* dock = on.dock(robot);
  const ViewDock* first = dock->views().open("stage");
  const ViewDock* second = dock->views().open("stage", true);
  settled(*first);
  EXPECT_TRUE(areApart(*dock, *first));
  EXPECT_TRUE(areApart(*first, *second));
  for (const ViewDock* view : {first, second}) EXPECT_GE(view->width(), 600);
  EXPECT_GE(dock->width(), 300);
}

TEST(ViewsOfRobot, OpenAgainWhereTheyStoodInTheNextRun) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  QRect place, ofRobot;
  {
    Window on;
    const RobotDock* dock = on.dock(robot);
    ViewDock* stage = dock->views().open("stage");
    dock->views().open("stage", true);
    dock->views().open("files")->close();
    stage->view()->setProperty("state", "zoomed");
    on.area().splitDockWidget(const_cast<RobotDock*>(dock), stage, Qt::Vertical);
    on.area().resizeDocks({stage}, {500}, Qt::Vertical);
    place = settled(*stage);
    ofRobot = settled(*dock);
    on.close();
  }
  Window on;
  const RobotDock* dock = on.dock(robot);
  ASSERT_EQ(on.views(*dock).size(), 2u);
  const ViewDock* stage = on.views(*dock)[0];
  EXPECT_EQ(stage->number(), 1);
  EXPECT_EQ(stage->view()->property("state").toByteArray(), "zoomed");
  EXPECT_EQ(settled(*stage), place);
  EXPECT_EQ(settled(*dock), ofRobot);
  EXPECT_EQ(on.views(*dock)[1]->number(), 2);
  EXPECT_FALSE(on.views(*dock)[1]->view()->property("state").isValid());
}

TEST(ViewsOfRobot, ComeBackWithTheTabThatWasInFront) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  for (const bool isStageInFront : {true, false}) {
    {
      Window on;
      RobotDock* dock = on.dock(robot);
      ViewDock* stage = dock->views().open("stage");
      on.area().tabifyDockWidget(dock, stage);
      (isStageInFront ? static_cast<QDockWidget*>(stage) : dock)->raise();
      settled(*stage);
      on.close();
    }
    Window on;
    const RobotDock* dock = on.dock(robot);
    const ViewDock* stage = on.views(*dock).front();
    EXPECT_TRUE(waitUntil([&] { return isInFront(*stage) == isStageInFront; }));
    EXPECT_EQ(isInFront(*dock), !isStageInFront);
  }
}

TEST(ViewsOfRobot, ComeBackWithARobotThatWasClosed) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  Window on;
  RobotDock* dock = on.dock(robot);
  ViewDock* stage = dock->views().open("stage");
  on.area().splitDockWidget(dock, stage, Qt::Vertical);
  const QRect place = settled(*stage);
  on.window.closeCurrentRobot();
  ASSERT_TRUE(waitUntil([&] { return on.area().docks().empty(); }));
  dock = on.dock(robot);
  ASSERT_EQ(on.views(*dock).size(), 1u);
  EXPECT_EQ(settled(*on.views(*dock).front()), place);
}

TEST(ViewsOfRobot, ComeBackInTheNextRunWithARobotThatWasClosed) {
  const TcpRobot robot;
  for (const bool isByItsDock : {false, true}) {
    const SettingsOfTest settings;
    QRect place;
    {
      Window on;
      RobotDock* dock = on.dock(robot);
      ViewDock* stage = dock->views().open("stage");
      on.area().splitDockWidget(dock, stage, Qt::Vertical);
      place = settled(*stage);
      isByItsDock ? static_cast<void>(dock->close()) : on.window.closeCurrentRobot();
      ASSERT_TRUE(waitUntil([&] { return on.area().docks().empty(); }));
      on.close();
    }
    Window on;
    const RobotDock* dock = on.dock(robot);
    ASSERT_EQ(on.views(*dock).size(), 1u);
    EXPECT_EQ(settled(*on.views(*dock).front()), place) << isByItsDock;
  }
}

TEST(ViewsOfRobot, OfOneOfItsPluginsComeBackInTheNextRunWithARobotThatWasClosed) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  const SeveralPlugins plugins({"a_plugin", "b_plugin"}, FIXTURES "/viewing/viewing_plugin.so");
  QRect place;
  {
    Window on(Past::Remembered, plugins.path());
    on.window.connectTo(robot.address(), {"a_plugin", "b_plugin"});
    RobotDock* first = on.dock(robot);
    ASSERT_EQ(on.area().docks().size(), 2u);
    ViewDock* stage = first->views().open("stage");
    on.area().splitDockWidget(first, stage, Qt::Vertical);
    place = settled(*stage);
    on.window.closeCurrentRobot();
    ASSERT_TRUE(waitUntil([&] { return on.area().docks().empty(); }));
    on.close();
  }
  Window on(Past::Remembered, plugins.path());
  const RobotDock* first = on.dock(robot);
  ASSERT_EQ(on.views(*first).size(), 1u);
  EXPECT_EQ(settled(*on.views(*first).front()), place);
}

TEST(ViewsOfRobot, LeaveTheSettingsAsTheyWereWhereNobodyOpenedOne) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  const auto keys = [] {
    QStringList views;
    for (const QString& key : QSettings().allKeys())
      if (key.contains("views") || key.contains("places")) views << key;
    return views;
  };
  {
    Window on;
    on.dock(robot);
    on.close();
  }
  EXPECT_EQ(keys(), QStringList{});
  {
    Window on;
    on.dock(robot)->views().open("stage");
    on.close();
  }
  EXPECT_EQ(keys().size(), 2);
  {
    Window on;
    on.views(*on.dock(robot)).front()->close();
    on.close();
  }
  EXPECT_EQ(keys(), QStringList{});
}

TEST(ViewsOfRobot, DoNotComeBackInAScriptOrWhenEverythingStartsFresh) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  {
    Window on;
    on.dock(robot)->views().open("stage");
    on.close();
  }
  {
    Window scripted(Past::Ignored);
    EXPECT_TRUE(scripted.views(*scripted.dock(robot)).empty());
    scripted.close();
  }
  EXPECT_EQ(RobotMemory::views(robot.name(), "viewing_plugin").size(), 1u);
  QSettings().setValue("Preferences/startFresh", true);
  Window on;
  EXPECT_TRUE(on.views(*on.dock(robot)).empty());
}

TEST(ViewsOfRobot, FloatingOnesAreRememberedThoughQtClosesThem) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  {
    Window on;
    const RobotDock* dock = on.dock(robot);
    ViewDock* stage = dock->views().open("stage");
    stage->setFloating(true);
    on.window.close();
    stage->close();  // as Qt does when the program ends
    const_cast<RobotDock*>(dock)->close();
  }
  Window on;
  const RobotDock* dock = on.dock(robot);
  ASSERT_EQ(on.views(*dock).size(), 1u);
  EXPECT_TRUE(on.views(*dock).front()->isFloating());
}

TEST(RobotMemory, TakesNoNonsenseForViews) {
  const SettingsOfTest settings;
  RobotMemory::setViews("a:1", "b", {{"stage", 2, "x"}});
  EXPECT_EQ(RobotMemory::views("a:1", "b"), (std::vector<ViewMemory>{{"stage", 2, "x"}}));
  EXPECT_FALSE(RobotMemory::widget("a:1", "b"));
  QSettings().setValue("Memory/a%3A1/widgets/b/views",
                       QVariantList{7, QVariantMap{{"kind", "stage"}, {"number", 0}},
                                    QVariantMap{{"kind", ""}, {"number", 1}}});
  EXPECT_TRUE(RobotMemory::views("a:1", "b").empty());
  RobotMemory::setPlaces("a:1", "p");
  EXPECT_EQ(RobotMemory::places("a:1"), "p");
  RobotMemory::forget("a:1");
  EXPECT_TRUE(RobotMemory::places("a:1").isEmpty());
  EXPECT_TRUE(QSettings().allKeys().filter("a%3A1").isEmpty());
}

// ---- the wall

TEST(Wall, ShowsTheStagesOfAllRobotsAndThenEverythingAsBefore) {
  const SettingsOfTest settings;
  const TcpRobot one, two;
  Window on;
  RobotDock* first = on.dock(one);
  RobotDock* second = on.dock(two);
  std::vector<ViewDock*> stages = {first->views().open("stage"), second->views().open("stage"),
                                   second->views().open("stage", true)};
  ViewDock* files = first->views().open("files");
  on.area().tabifyDockWidget(second, stages[1]);
  const QList<QWidget*> all = {first, second, stages[0], stages[1], stages[2], files};
  QList<QRect> before;
  for (const QWidget* dock : all) before << settled(*dock);

  on.entry("&Wall")->trigger();
  settled(*stages[0]);
  EXPECT_TRUE(on.entry("&Wall")->isChecked());
  for (const QWidget* hidden : std::vector<QWidget*>{first, second, files})
    EXPECT_FALSE(hidden->isVisible());
  std::set<std::pair<int, int>> corners;
  for (const ViewDock* stage : stages) {
    EXPECT_TRUE(isInFront(*stage));
    EXPECT_GE(stage->width(), on.area().width() * 2 / 5);
    EXPECT_GE(stage->height(), on.area().height() * 2 / 5);
    corners.insert({stage->x(), stage->y()});
  }
  EXPECT_EQ(corners.size(), 3u);
  EXPECT_TRUE(areApart(*stages[0], *stages[1]) && areApart(*stages[0], *stages[2]));

  on.entry("&Wall")->trigger();
  EXPECT_FALSE(on.entry("&Wall")->isChecked());
  for (int i = 0; i < all.size(); ++i) EXPECT_EQ(settled(*all[i]), before[i]) << i;
  EXPECT_TRUE(first->isVisible() && files->isVisible());
}

TEST(Wall, GivesEachRobotAStage) {
  const SettingsOfTest settings;
  const TcpRobot one, two;
  Window on;
  const RobotDock* first = on.dock(one);
  const RobotDock* second = on.dock(two);
  on.entry("&Wall")->trigger();
  ASSERT_EQ(on.views(*first).size(), 1u);
  ASSERT_EQ(on.views(*second).size(), 1u);
  settled(*first);
  EXPECT_TRUE(isInFront(*on.views(*first).front()));
  EXPECT_TRUE(isInFront(*on.views(*second).front()));
}

TEST(Wall, FollowsStagesThatComeAndGo) {
  const SettingsOfTest settings;
  const TcpRobot one, two;
  Window on;
  RobotDock* first = on.dock(one);
  RobotDock* second = on.dock(two);
  on.entry("&Wall")->trigger();
  const ViewDock* third = second->views().open("stage", true);
  settled(*third);
  EXPECT_TRUE(on.area().isWall());
  EXPECT_TRUE(isInFront(*third));
  EXPECT_FALSE(first->isVisible());
  on.views(*second).front()->close();
  EXPECT_TRUE(waitUntil([&] { return isInFront(*third) && third->height() > 400; }));
  const QPointer<RobotDock> gone(second);
  second->close();
  EXPECT_TRUE(waitUntil([&] { return gone.isNull(); }));
  EXPECT_TRUE(on.area().isWall());
  settled(*first);
  EXPECT_TRUE(isInFront(*on.views(*first).front()));
  on.views(*first).front()->close();
  EXPECT_TRUE(waitUntil([&] { return !on.area().isWall() && first->isVisible(); }));
}

TEST(Wall, GoesWithTheLastRobotThatHasAStage) {
  const SettingsOfTest settings;
  const TcpRobot one, two;
  Window on;
  RobotDock* first = on.dock(one);
  const RobotDock* second = on.dock(two);
  on.entry("&Wall")->trigger();
  on.views(*second).front()->close();
  settled(*second);
  ASSERT_TRUE(on.area().isWall());
  EXPECT_FALSE(second->isVisible());
  first->close();
  EXPECT_TRUE(waitUntil([&] { return !on.area().isWall() && second->isVisible(); }));
}

TEST(Wall, IsNotWhatIsRemembered) {
  const SettingsOfTest settings;
  const TcpRobot robot;
  QRect place;
  {
    Window on;
    const RobotDock* dock = on.dock(robot);
    const ViewDock* stage = dock->views().open("stage");
    place = settled(*stage);
    on.entry("&Wall")->trigger();
    ASSERT_NE(settled(*stage), place);
    on.close();
  }
  Window on;
  const RobotDock* dock = on.dock(robot);
  EXPECT_TRUE(dock->isVisible());
  EXPECT_EQ(settled(*on.views(*dock).front()), place);
}

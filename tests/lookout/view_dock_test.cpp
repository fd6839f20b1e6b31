// SPDX-License-Identifier: Apache-2.0
// Further views of what a robot's widget shows, through all that may happen to the robot.
#include "robots/view_dock.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "ky/meanwhile.h"
#include "robots/lost_veil.h"
#include "robots/robot_dock.h"
#include "robots/robot_report.h"
#include "robots/robot_views.h"
#include "slow_robot.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "test_plugin.h"
#include "window/robot_area.h"

using namespace Lookout;
using State = RobotSession::State;

namespace {

// A robot with views, in an area of its own.
struct Viewed {
  explicit Viewed(const QStringList& kinds = {"stage", "files"}) {
    maker.kinds = kinds;
    area.resize(1000, 600);
    area.setAnimated(false);  // docks are where they go to at once
    area.show();
    dock = new RobotDock({"test", {}, {}, {}, &maker}, robot.address(), "", closer);
    area.add(dock);
  }
  // And waits until it is connected.
  static std::unique_ptr<Viewed> connected() {
    auto on = std::make_unique<Viewed>();
    EXPECT_TRUE(on->is(State::Connected));
    return on;
  }

  bool is(State state) const {
    return waitUntil([&] { return dock->session().state() == state; });
  }
  RobotViews& views() const { return dock->views(); }
  TestWidget* widget() const { return maker.latest(); }
  static TestView* viewOf(const ViewDock& dock) { return static_cast<TestView*>(dock.view()); }
  // Over all of the view: the robot is silent or lost.
  static LostVeil* veilOf(const ViewDock& dock) {
    for (LostVeil* veil : dock.findChildren<LostVeil*>())
      if (veil->parentWidget() != dock.view()) return veil;
    return nullptr;
  }
  static LostVeil* standstillOf(const ViewDock& dock) {
    return dock.view()->findChild<LostVeil*>();
  }
  void loseAndFindAgain() {
    robot.stop();
    ASSERT_TRUE(is(State::Lost));
    robot.start();
    ASSERT_TRUE(is(State::Connected));
  }

  TcpRobot robot;
  BrokerCloser closer;
  TestPlugin maker;
  RobotArea area;
  QPointer<RobotDock> dock;
};

}  // namespace

TEST(ViewDock, IsCalledByItsViewItsRobotAndItsNumber) {
  const auto on = Viewed::connected();
  const ViewDock* first = on->views().open("stage");
  const ViewDock* second = on->views().open("stage", true);
  const QString robot = "test " + on->robot.name();
  EXPECT_EQ(first->windowTitle(), "My stage - " + robot);
  EXPECT_EQ(second->windowTitle(), "My stage 2 - " + robot);
  EXPECT_EQ(first->accessibleName(), first->windowTitle());
  EXPECT_EQ(first->objectName(), "view " + robot + " stage 1");
  EXPECT_EQ(second->objectName(), "view " + robot + " stage 2");
  first->view()->setWindowTitle("Other");
  EXPECT_EQ(first->windowTitle(), "Other - " + robot);
  on->robot.stop();
  ASSERT_TRUE(on->is(State::Lost));
  EXPECT_EQ(first->windowTitle(), "Other - " + robot + " (connection lost)");
}

TEST(ViewDock, MovesFloatsAndCloses) {
  const auto on = Viewed::connected();
  ViewDock* dock = on->views().open("stage");
  EXPECT_EQ(dock->features(), QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable |
                                  QDockWidget::DockWidgetFloatable);
  dock->setFloating(true);
  EXPECT_TRUE(waitUntil([&] { return dock->view()->isVisible(); }));
}

TEST(ViewDock, OpensWhenTheUserWantsIt) {
  const auto on = Viewed::connected();
  emit on->widget()->viewWanted("stage", false);
  ASSERT_EQ(on->views().docks().size(), 1u);
  ViewDock* dock = on->views().docks().front();
  EXPECT_TRUE(waitUntil([&] { return dock->view()->isVisible(); }));
  on->area.tabifyDockWidget(dock, on->dock);
  on->dock->raise();
  ASSERT_TRUE(waitUntil([&] { return dock->visibleRegion().isEmpty(); }));
  emit on->widget()->viewWanted("stage", false);
  EXPECT_EQ(on->views().docks().size(), 1u);
  EXPECT_TRUE(waitUntil([&] { return !dock->visibleRegion().isEmpty(); }));
  emit dock->view()->viewWanted("stage", true);
  EXPECT_EQ(on->views().docks().size(), 2u);
}

TEST(ViewDock, EndsItsViewWhenTheUserClosesIt) {
  const auto on = Viewed::connected();
  const QPointer<ViewDock> closed(on->views().open("stage"));
  const QPointer<ViewDock> wanted(on->views().open("files"));
  closed->close();
  emit wanted->view()->closeWanted();
  EXPECT_TRUE(waitUntil([&] { return closed.isNull() && wanted.isNull(); }));
  EXPECT_EQ(on->maker.events.count("view deleted"), 2);
  EXPECT_TRUE(on->views().docks().empty());
  EXPECT_EQ(on->dock->session().state(), State::Connected);
  EXPECT_EQ(on->views().open("stage")->number(), 1) << "the number is free again";
}

TEST(ViewDock, EndsWithItsRobotAndBeforeTheWidget) {
  const auto on = Viewed::connected();
  const QPointer<ViewDock> view(on->views().open("stage"));
  view->setFloating(true);
  on->dock->close();
  EXPECT_TRUE(!view || view->isHidden());
  EXPECT_TRUE(waitUntil([&] { return on->dock.isNull() && view.isNull(); }));
  EXPECT_EQ(on->maker.events.mid(on->maker.events.size() - 2),
            (QStringList{"view deleted", "deleted"}));
}

TEST(ViewDock, EndsWithTheWindowInWhateverState) {
  for (const bool isLost : {false, true}) {
    auto on = Viewed::connected();
    const QPointer<LookoutWidget> inDock(on->views().open("stage")->view());
    ViewDock* dock = on->views().open("stage", true);
    dock->setFillsScreen(true);
    const QPointer<LookoutWidget> onScreen(dock->view());
    const QPointer<QWidget> screen(dock->view()->window());
    ASSERT_NE(screen, &on->area);
    if (isLost) {
      on->robot.stop();
      ASSERT_TRUE(on->is(State::Lost));
    }
    on.reset();
    EXPECT_TRUE(inDock.isNull() && onScreen.isNull());
    EXPECT_TRUE(screen.isNull()) << "nothing would close it any more";
  }
}

TEST(ViewDock, IsVeiledWhileItsRobotIsLost) {
  const auto on = Viewed::connected();
  const ViewDock* dock = on->views().open("stage");
  const LostVeil* veil = Viewed::veilOf(*dock);
  EXPECT_FALSE(veil->isVisible());
  on->robot.stop();
  ASSERT_TRUE(on->is(State::Lost));
  EXPECT_TRUE(veil->isVisible());
  EXPECT_TRUE(veil->text().startsWith("Connection lost: "));
  EXPECT_NE(dock->view(), nullptr) << "its last picture stays below";
  on->robot.start();
  ASSERT_TRUE(on->is(State::Connected));
  EXPECT_FALSE(veil->isVisible());
}

TEST(ViewDock, GoesOnWithAnotherViewInItsPlaceWhenTheRobotIsBack) {
  const auto on = Viewed::connected();
  ViewDock* dock = on->views().open("stage");
  const QPointer<LookoutWidget> before(dock->view());
  Viewed::viewOf(*dock)->state = "zoomed";
  Viewed::viewOf(*dock)->frames = 7;
  on->area.splitDockWidget(on->dock, dock, Qt::Vertical);
  QCoreApplication::processEvents();
  on->area.resizeDocks({dock}, {150}, Qt::Vertical);
  for (int round = 0; round < 5; ++round) QCoreApplication::processEvents();
  ASSERT_LT(dock->height(), 300);
  const QRect place = dock->geometry();

  on->loseAndFindAgain();
  ASSERT_NE(dock->view(), nullptr);
  EXPECT_TRUE(before.isNull());
  EXPECT_EQ(Viewed::viewOf(*dock)->state, "zoomed");
  EXPECT_EQ(on->views().docks(), std::vector<ViewDock*>{dock});
  EXPECT_TRUE(dock->view()->isVisible());
  for (int round = 0; round < 5; ++round) QCoreApplication::processEvents();
  EXPECT_EQ(dock->geometry(), place);
  EXPECT_EQ(dock->framesPainted(), 7u);
  // The view goes before the widget.
  const QStringList& events = on->maker.events;
  const auto widget = events.indexOf("deleted after its broker was closed");
  ASSERT_GE(widget, 1);
  EXPECT_EQ(events[widget - 1], "view deleted");
  EXPECT_EQ(events.last(), "makeView stage");
}

TEST(ViewDock, OpenedBeforeTheRobotAnswersSaysSoAndWaits) {
  Viewed on;
  const ViewDock* dock = on.views().open("stage");
  ASSERT_NE(dock, nullptr);
  EXPECT_EQ(dock->view(), nullptr);
  bool isTold = false;
  for (const QLabel* label : dock->findChildren<QLabel*>())
    isTold = isTold || label->text() == "Connecting to " + on.robot.name() + "...";
  EXPECT_TRUE(isTold);
  ASSERT_TRUE(on.is(State::Connected));
  EXPECT_TRUE(waitUntil([&] { return dock->view() != nullptr && dock->view()->isVisible(); }));
}

TEST(ViewDock, OfAKindThatTheWidgetDoesNotHaveIsRefused) {
  LogCapture log;
  Viewed on({"files"});
  QString why;
  QObject::connect(&on.area, &RobotArea::refused, [&](const QString& text) { why = text; });
  const QPointer<ViewDock> early(on.views().open("stage"));
  ASSERT_TRUE(on.is(State::Connected));
  EXPECT_TRUE(waitUntil([&] { return early.isNull(); }));
  const QString expected = "test " + on.robot.name() + " has no view \"stage\"; it has: files";
  EXPECT_EQ(why, expected);
  why.clear();
  EXPECT_EQ(on.views().open("stage"), nullptr);
  EXPECT_EQ(why, expected);
  EXPECT_TRUE(on.views().docks().empty());
  int warnings = 0;
  for (const auto& record : log.records())
    warnings += record.text == expected.toStdString() ? 1 : 0;
  EXPECT_EQ(warnings, 2);
}

TEST(ViewDock, VeilsAPictureThatStandsStillLikeTheRobotsOwn) {
  const auto on = Viewed::connected();
  const ViewDock* dock = on->views().open("stage");
  TestView* view = Viewed::viewOf(*dock);
  QTimer camera;
  camera.callOnTimeout([&] { view->paintPicture(); });
  camera.start(20);
  view->playing = true;
  const auto is = [&](PictureState state) {
    return waitUntil([&] { return dock->reading().state == state; });
  };
  ASSERT_TRUE(is(PictureState::Live));
  EXPECT_EQ(Viewed::standstillOf(*dock), nullptr);
  camera.stop();
  ASSERT_TRUE(is(PictureState::Stalled));
  ASSERT_NE(Viewed::standstillOf(*dock), nullptr);
  EXPECT_TRUE(Viewed::standstillOf(*dock)->text().startsWith("No new picture for "));
  view->paintPicture();
  EXPECT_TRUE(is(PictureState::Live));
  view->playing = false;
  EXPECT_TRUE(is(PictureState::Paused));
  EXPECT_EQ(Viewed::standstillOf(*dock), nullptr);
}

TEST(ViewDock, SpeaksForItsRobotWhileTheWidgetIsBehindIt) {
  const auto on = Viewed::connected();
  on->widget()->addPicture();
  ViewDock* dock = on->views().open("stage");
  TestView* view = Viewed::viewOf(*dock);
  on->area.tabifyDockWidget(on->dock, dock);
  dock->raise();
  QTimer camera;
  camera.callOnTimeout([&] { view->paintPicture(); });
  camera.start(20);
  view->playing = true;
  on->widget()->setPlaying(true);
  EXPECT_TRUE(waitUntil([&] { return on->dock->status().picture.state == PictureState::Live; }));
  EXPECT_GE(on->dock->framesPainted(), 1u);
  EXPECT_FALSE(robotReport(*on->dock).startsWith("frames painted: 0,"));
  on->dock->raise();
  on->widget()->frames = 100000;
  EXPECT_EQ(on->dock->framesPainted(), 100000u);
  EXPECT_TRUE(waitUntil([&] { return on->dock->status().picture.state == PictureState::Stalled; }))
      << "now the widget's own counts";
  on->area.splitDockWidget(on->dock, dock, Qt::Vertical);
  ASSERT_TRUE(waitUntil([&] { return dock->reading().state == PictureState::Live; }));
  EXPECT_EQ(on->dock->status().picture.state, PictureState::Stalled) << "and beside the view, too";
}

TEST(ViewDock, FillsTheScreenAndComesBackToItsPlace) {
  const auto on = Viewed::connected();
  ViewDock* dock = on->views().open("stage");
  ViewDock* other = on->views().open("files");
  QCoreApplication::processEvents();
  const QRect place = dock->geometry();
  emit dock->view()->fullScreenWanted(true);
  ASSERT_TRUE(waitUntil([&] { return dock->fillsScreen(); }));
  QWidget* screen = dock->view()->window();
  EXPECT_NE(screen, &on->area);
  EXPECT_TRUE(screen->isFullScreen());
  EXPECT_EQ(screen->windowTitle(), dock->windowTitle());
  EXPECT_TRUE(waitUntil([&] { return dock->view()->size() == screen->size(); }));
  EXPECT_TRUE(dock->view()->isVisible());
  EXPECT_EQ(dock->geometry(), place);
  EXPECT_FALSE(other->fillsScreen());

  emit dock->view()->fullScreenWanted(false);
  ASSERT_TRUE(waitUntil([&] { return !dock->fillsScreen(); }));
  EXPECT_EQ(dock->view()->window(), &on->area);
  EXPECT_TRUE(dock->view()->isVisible());
  EXPECT_EQ(dock->geometry(), place);
}

TEST(ViewDock, LeavesTheScreenByKeysByItsWindowAndByItsButton) {
  const auto on = Viewed::connected();
  ViewDock* dock = on->views().open("stage");
  const std::vector<std::function<void(QWidget*)>> ways = {
      [&](QWidget*) { QTest::keyClick(dock->view(), Qt::Key_Escape); },
      [&](QWidget*) { QTest::keyClick(dock->view(), Qt::Key_F11); },
      [](QWidget* screen) { screen->close(); },
      [&](QWidget*) { dock->findChild<QPushButton*>()->click(); }};
  for (const auto& leave : ways) {
    dock->setFillsScreen(true);
    ASSERT_TRUE(dock->fillsScreen());
    leave(dock->view()->window());
    EXPECT_TRUE(waitUntil([&] { return !dock->fillsScreen(); }));
    EXPECT_EQ(dock->view()->window(), &on->area);
  }
}

TEST(ViewDock, GoesOnFillingTheScreenWhenTheRobotIsBack) {
  const auto on = Viewed::connected();
  ViewDock* dock = on->views().open("stage");
  dock->setFillsScreen(true);
  const QPointer<QWidget> screen(dock->view()->window());
  on->robot.stop();
  ASSERT_TRUE(on->is(State::Lost));
  bool isVeiled = false;
  for (const LostVeil* veil : screen->findChildren<LostVeil*>())
    isVeiled = isVeiled || (veil->isVisible() && veil->text().startsWith("Connection lost"));
  EXPECT_TRUE(isVeiled);
  on->robot.start();
  ASSERT_TRUE(on->is(State::Connected));
  EXPECT_TRUE(dock->fillsScreen());
  ASSERT_FALSE(screen.isNull());
  ASSERT_NE(dock->view(), nullptr);
  EXPECT_EQ(dock->view()->window(), screen);
  EXPECT_TRUE(dock->view()->isVisible());
  dock->close();
  EXPECT_TRUE(waitUntil([&] { return screen.isNull(); }));
}

TEST(ViewDock, DoesNotGoWhileSomethingWaitsForARobot) {
  const auto on = Viewed::connected();
  SlowRobot slow;
  Ky::KyBrokerOptions options;
  options.name = "waiter";
  options.parent = slow.address();
  const auto broker = Ky::KyBroker::create(std::move(options));
  const QPointer<ViewDock> dock(on->views().open("stage"));
  int rounds = 0;
  bool isGoneTooEarly = false;
  const Ky::KyMeanwhile meanwhile([&](const std::string&) {
    if (++rounds == 1) dock->close();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    isGoneTooEarly = isGoneTooEarly || dock.isNull();
    if (rounds == 10) slow.answer();
  });
  EXPECT_TRUE(broker->call("Slow", "wait", {}).asBool());
  EXPECT_GE(rounds, 1);
  EXPECT_FALSE(isGoneTooEarly);
  EXPECT_TRUE(waitUntil([&] { return dock.isNull(); }));
  EXPECT_EQ(on->maker.events.count("view deleted"), 1);
}

TEST(RobotSession, HasTheFirstWidgetChooseBeforeItPlays) {
  Viewed on;
  on.dock->session().chooseAtFirst("size", "640x480");
  on.dock->session().chooseAtFirst("fps", "30");
  on.dock->session().setPlaying(true);
  ASSERT_TRUE(on.is(State::Connected));
  const QStringList chosen = {"choose size 640x480", "choose fps 30"};
  EXPECT_EQ(on.maker.events.filter("choose"), chosen);
  EXPECT_TRUE(on.widget()->isPlaying());
  on.loseAndFindAgain();
  EXPECT_EQ(on.maker.events.filter("choose"), chosen) << "then the state counts";
}

TEST(RobotSession, TellsWhatCannotBeChosen) {
  LogCapture log;
  Viewed on;
  on.maker.refusal = "the camera is too small";
  QString why;
  QObject::connect(&on.area, &RobotArea::refused, [&](const QString& text) { why = text; });
  on.dock->session().chooseAtFirst("size", "640x480");
  ASSERT_TRUE(on.is(State::Connected));
  EXPECT_EQ(why, "test " + on.robot.name() + ": size is not 640x480: the camera is too small");
  bool isLogged = false;
  for (const auto& record : log.records())
    isLogged = isLogged || record.text == "size is not 640x480: the camera is too small";
  EXPECT_TRUE(isLogged);
}

// SPDX-License-Identifier: Apache-2.0
// What a dock says of its robot's picture.
#include "robots/robot_dock.h"

#include <gtest/gtest.h>

#include <QMainWindow>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include "guests.h"
#include "robots/lost_veil.h"
#include "robots/robot_report.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "test_plugin.h"

using namespace Lookout;
using State = RobotSession::State;

namespace {

// A robot in a window of its own, whose picture the test paints.
struct Docked {
  Docked() : dock(plugin("test"), robot.address(), "", closer) {
    window.addDockWidget(Qt::TopDockWidgetArea, &dock);
    window.resize(600, 400);
    window.show();
    dock.session().start();
    EXPECT_TRUE(waitUntil([&] { return dock.session().state() == State::Connected; }));
    addPicture();
    camera.callOnTimeout([this] { widget()->paintPicture(); });
  }

  TestWidget* widget() const { return maker.latest(); }
  void addPicture() {
    EXPECT_TRUE(waitUntil([this] { return widget()->width() > 300; })) << "it fills the dock";
    widget()->addPicture();
  }
  // With a new picture from time to time.
  void play(int everyMs) {
    widget()->setPlaying(true);
    camera.start(everyMs);
  }
  QString line() const { return dock.findChild<StatusLine*>()->text(); }
  bool says(const QString& text) const {
    return waitUntil([&] { return line().contains(text); });
  }
  bool is(PictureState state) const {
    return waitUntil([&] { return dock.status().picture.state == state; });
  }
  LostVeil* veil() const { return widget()->area->findChild<LostVeil*>(); }
  int lightness() {
    QWidget* area = widget()->area;
    const QPoint corner = area->mapTo(&window, QPoint(5, area->height() - 5));
    return window.grab().toImage().pixelColor(corner).lightness();
  }

  TcpRobot robot;
  BrokerCloser closer;
  TestPlugin maker;
  QMainWindow window;
  RobotDock dock;
  QTimer camera;

 private:
  Plugin plugin(const QString& name) { return {name, {}, {}, {}, &maker}; }
};

}  // namespace

TEST(RobotDock, SaysHowThePicturesOfItsWidgetCome) {
  Docked on;
  EXPECT_TRUE(on.says("kB/s"));
  EXPECT_FALSE(on.line().contains("exact"));
  auto front = on.maker.brokers.back()->receiveStream();
  front->describe("exact");
  EXPECT_TRUE(on.says(QString::fromUtf8(" \u00b7 exact \u00b7 "))) << on.line().toStdString();
  const auto rear = on.maker.brokers.back()->receiveStream();
  rear->describe("H.264, 1.4 Mbit/s");
  EXPECT_TRUE(on.says(QString::fromUtf8(" \u00b7 exact, H.264, 1.4 Mbit/s \u00b7 ")));
  front.reset();
  EXPECT_TRUE(on.says(QString::fromUtf8(" \u00b7 H.264, 1.4 Mbit/s \u00b7 ")));
}

TEST(RobotDock, ShowsTheFiguresOfALivePicture) {
  Docked on;
  on.play(20);
  EXPECT_TRUE(on.says("Live"));
  const QRegularExpression figures(
      "Live . [0-9]+\\.[0-9] fps . newest picture 0\\.[0-9] s ago . round trip [0-9.]+ ms . "
      "[0-9.]+ kB/s$");
  EXPECT_TRUE(waitUntil([&] { return figures.match(on.line()).hasMatch(); }))
      << on.line().toStdString();
}

TEST(RobotDock, NeedsOneConnectionForAPluginThatSaysWhatBrokerItAsksFor) {
  const TcpRobot robot;
  const auto guests = Ky::KyModule::createModule<Guests>(robot.broker());
  BrokerCloser closer;
  TestPlugin maker;
  {
    RobotDock dock({"test", {}, {}, {}, &maker, "TestBroker"}, robot.address(), "", closer);
    dock.session().start();
    ASSERT_TRUE(waitUntil([&] { return dock.session().state() == State::Connected; }));
  }
  ASSERT_TRUE(waitUntil([&] { return guests->left > 0; }));
  EXPECT_EQ(guests->names, QStringList{"TestBroker"});
}

TEST(RobotDock, TellsOfEachRobotItsOwnRate) {
  Docked fast, slow;
  fast.play(20);
  slow.play(200);
  const auto rateOf = [](const Docked& one) { return one.dock.status().picture.framesPerSecond; };
  EXPECT_TRUE(waitUntil([&] { return rateOf(slow) > 0 && rateOf(fast) > 3 * rateOf(slow); }));
  EXPECT_LT(rateOf(slow), 8);
}

TEST(RobotDock, SaysThatNothingPlaysYetAndThatItIsPaused) {
  Docked on;
  EXPECT_TRUE(on.says("Not playing"));
  on.play(20);
  EXPECT_TRUE(on.says("fps"));
  on.widget()->setPlaying(false);
  EXPECT_TRUE(on.says("Paused"));
  EXPECT_FALSE(on.line().contains("fps"));
}

TEST(RobotDock, VeilsAPictureThatStandsStillAndSaysWhy) {
  Docked on;
  on.play(20);
  ASSERT_TRUE(on.is(PictureState::Live));
  EXPECT_EQ(on.veil(), nullptr);
  const int before = on.lightness();

  on.camera.stop();
  on.widget()->problem = "camera 0 has no picture: it is unplugged";
  ASSERT_TRUE(on.is(PictureState::Stalled));
  ASSERT_NE(on.veil(), nullptr);
  EXPECT_TRUE(on.veil()->isVisible());
  EXPECT_EQ(on.veil()->size(), on.widget()->area->size());
  EXPECT_TRUE(waitUntil([&] {
    return on.veil()->text() == "No new picture for 2 s: camera 0 has no picture: it is unplugged";
  })) << on.veil()->text().toStdString();
  EXPECT_TRUE(on.line().contains("No new picture for 2 s")) << on.line().toStdString();
  EXPECT_LT(on.lightness(), before * 2 / 3);

  on.widget()->paintPicture();
  ASSERT_TRUE(on.is(PictureState::Live));
  EXPECT_EQ(on.veil(), nullptr);
  EXPECT_EQ(on.lightness(), before);
}

TEST(RobotDock, VeilsAPictureThatNeverComes) {
  Docked on;
  on.widget()->setPlaying(true);
  EXPECT_TRUE(on.says("Waiting for a picture"));
  ASSERT_TRUE(on.is(PictureState::Stalled));
  EXPECT_EQ(on.veil()->text(), "No picture for 1 s") << "nobody said why";
}

TEST(RobotDock, LeavesTheSettingsBesideAVeiledPictureAlone) {
  Docked on;
  QPushButton setting("setting", on.widget());
  setting.setGeometry(0, 0, 80, 30);
  setting.show();
  QPushButton under("under the picture", on.widget()->area);
  under.show();
  int clicks = 0;
  for (QPushButton* button : {&setting, &under})
    QObject::connect(button, &QPushButton::clicked, [&] { ++clicks; });
  on.widget()->setPlaying(true);
  ASSERT_TRUE(on.is(PictureState::Stalled));
  for (const QPushButton* button : {&setting, &under}) {
    const QPoint middle = button->mapTo(&on.window, button->rect().center());
    EXPECT_EQ(on.window.childAt(middle), button);
    QTest::mouseClick(on.window.windowHandle(), Qt::LeftButton, {}, middle);
  }
  EXPECT_EQ(clicks, 2);
}

TEST(RobotDock, HasOneVeilOnlyOverALostRobot) {
  Docked on;
  on.widget()->setPlaying(true);
  ASSERT_TRUE(on.is(PictureState::Stalled));
  on.robot.stop();
  ASSERT_TRUE(waitUntil([&] { return on.dock.session().state() == State::Lost; }));
  EXPECT_EQ(on.veil(), nullptr);
  EXPECT_TRUE(on.line().contains("Connection lost"));
  // The next widget has a picture of its own to wait for.
  on.robot.start();
  ASSERT_TRUE(waitUntil([&] { return on.dock.session().state() == State::Connected; }));
  on.addPicture();
  on.widget()->setPlaying(true);
  EXPECT_TRUE(on.is(PictureState::Waiting));
  EXPECT_TRUE(on.is(PictureState::Stalled));
  EXPECT_NE(on.veil(), nullptr);
}

TEST(RobotDock, DoesNotMissAPictureThatNobodyCanSee) {
  Docked on;
  on.play(20);
  ASSERT_TRUE(on.is(PictureState::Live));
  on.widget()->area->hide();
  on.camera.stop();
  EXPECT_TRUE(on.is(PictureState::None));
  EXPECT_FALSE(waitUntil([&] { return on.dock.status().picture.state != PictureState::None; },
                         std::chrono::milliseconds(1600)));
  EXPECT_TRUE(on.says("Connected"));
}

TEST(RobotDock, ClosesUnderAVeil) {
  auto on = std::make_unique<Docked>();
  on->widget()->setPlaying(true);
  ASSERT_TRUE(on->is(PictureState::Stalled));
  on.reset();
}

TEST(RobotReport, TellsTheFiguresOfAPicture) {
  Docked on;
  const auto matches = [&](const QString& pattern) {
    const QRegularExpression line(
        "^" + QString(pattern).replace("ROBOT", QRegularExpression::escape(on.robot.name())) + "$");
    return line.match(robotReport(on.dock)).hasMatch();
  };
  const QString link = ", round trip: ([0-9.]+ ms|unknown), bandwidth: [0-9.]+ kB/s";
  EXPECT_TRUE(on.is(PictureState::NotPlaying));
  EXPECT_TRUE(
      matches("frames painted: 0, fps shown: 0.0, robot: ROBOT, state: not playing, "
              "newest picture: none" +
              link))
      << robotReport(on.dock).toStdString();
  on.play(20);
  EXPECT_TRUE(waitUntil([&] {
    return matches(
        "frames painted: [0-9]+, fps shown: [1-9][0-9.]*, robot: ROBOT, state: live, "
        "newest picture: 0.[0-9] s ago" +
        link);
  })) << robotReport(on.dock).toStdString();
  on.camera.stop();
  on.widget()->problem = "two\nlines";
  EXPECT_TRUE(waitUntil([&] {
    return matches(
        "frames painted: [0-9]+, fps shown: 0.0, robot: ROBOT, state: stalled for "
        "[0-9.]+ s, newest picture: [0-9.]+ s ago" +
        link + ", problem: two lines");
  })) << robotReport(on.dock).toStdString();
  on.widget()->setPlaying(false);
  EXPECT_TRUE(waitUntil([&] {
    return matches(
        "frames painted: [0-9]+, fps shown: 0.0, robot: ROBOT, state: paused, "
        "newest picture: [0-9.]+ s ago" +
        link);
  })) << robotReport(on.dock).toStdString();
  on.robot.stop();
  EXPECT_TRUE(waitUntil([&] {
    return matches(
        "frames painted: [0-9]+, fps shown: 0.0, robot: ROBOT, state: lost, "
        "newest picture: none, .*, problem: .+");
  })) << robotReport(on.dock).toStdString();
}

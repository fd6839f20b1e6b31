// SPDX-License-Identifier: Apache-2.0
// A film that is being recorded when the connection breaks: it goes on, and the window knows it.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <csignal>

#include "cable.h"
#include "ky/video_recorder_proxy.h"
#include "lookout/lookout_widget.h"
#include "lookout/settings_of_test.h"
#include "robot/recording/film_facts.h"
#include "support/modal_driver.h"
#include "window/robot_area.h"
#include "window_on_robots.h"

using State = Lookout::RobotSession::State;

namespace {

const std::string kClip = "/home/tam/recordings/cameras/clip.avi";
// What belongs to a silent peer is kept for 15 s.
constexpr std::chrono::seconds kUntilLost{40};

template <class Named>
Named* named(const QWidget& widget, const QString& name) {
  for (Named* child : widget.findChildren<Named*>())
    if (child->accessibleName() == name) return child;
  return nullptr;
}

// Somebody at a window who records a film on a robot.
class FilmGoesOn : public testing::Test {
 protected:
  FilmGoesOn() {
    driver.on<QFileDialog>("Upload video on your computer", [this](QFileDialog& dialog) {
      proposed = dialog.selectedFiles().value(0);
      dialog.reject();
    });
  }
  ~FilmGoesOn() override {
    if (program) program->shutdown();
  }

  // Over this address; returns once some frames are in the film.
  void recordOn(const Ky::KyAddress& address) {
    session = desktop.play(address);
    ASSERT_NE(session, nullptr);
    program = robot->connect();
    named<QLineEdit>(*session->widget(), "Video name")->setText("clip");
    pressRecord();
    ASSERT_TRUE(showsThatItRecords());
    waitForFrames(5);
  }

  void pressRecord() { QTest::mouseClick(recordButton(), Qt::LeftButton); }
  QPushButton* recordButton() { return named<QPushButton>(*session->widget(), "Record"); }
  QString status() { return named<QLabel>(*session->widget(), "Recording status")->text(); }
  bool showsThatItRecords() { return status() == "Recording clip ... "; }
  Ky::KyValue film() { return Ky::KyVideoRecorderProxy(program).getState(); }
  void waitForFrames(int more) {
    const int before = film()[1].asInt();
    ASSERT_TRUE(waitUntil([&] { return film()[1].asInt() >= before + more; }));
  }
  // After the end of the film: how many frames the panel says that it has.
  int framesTold() {
    const QString told = status();
    EXPECT_TRUE(told.startsWith("'clip' (")) << told.toStdString();
    return told.mid(8).section(' ', 0, 0).toInt();
  }

  SettingsOfTest settings;
  std::unique_ptr<KyrobotProcess> robot = std::make_unique<KyrobotProcess>();
  WindowOnRobots desktop;
  Lookout::RobotSession* session = nullptr;
  boost::shared_ptr<Ky::KyBroker> program;  // another one, which sees what the robot does
  ModalDriver driver;
  QString proposed;
};

TEST_F(FilmGoesOn, TheWidgetAfterALossShowsItAndStopsIt) {
  Cable cable(robot->address().port);
  ASSERT_NO_FATAL_FAILURE(recordOn(cable.address()));
  const QPointer<QWidget> before = session->widget();
  const int framesAtTheCut = film()[1].asInt();
  cable.cut();
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Lost; }, kUntilLost));
  // The robot gives the desktop up by itself.
  ASSERT_TRUE(robot->process().waitForErrorLine("goes on until it is stopped"));
  cable.mend();
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Connected; }));
  EXPECT_TRUE(before.isNull());

  EXPECT_TRUE(showsThatItRecords()) << status().toStdString();
  EXPECT_FALSE(named<QLineEdit>(*session->widget(), "Video name")->isEnabled());
  EXPECT_EQ(film()[2], Ky::KyValue(kClip));
  EXPECT_THROW(Ky::KyVideoRecorderProxy(program).startRecording("/home/tam/", "other"), Ky::KyError)
      << "it is somebody's again";
  waitForFrames(3);
  const int framesBeforeTheStop = film()[1].asInt();
  pressRecord();
  EXPECT_GE(framesTold(), framesBeforeTheStop);
  EXPECT_GE(framesTold() - framesAtTheCut, 15 * 14) << "the cut is in the film";
  EXPECT_TRUE(status().endsWith("File path: " + QString::fromStdString(kClip)));
  EXPECT_EQ(proposed, QDir::home().absoluteFilePath("clip.avi"));
  EXPECT_EQ(driver.seen(), QStringList{"Upload video on your computer"});
  expectFilm(robot->onDisk(kClip), 320, 240, 15, framesTold());
}

TEST_F(FilmGoesOn, ClosingTheDockAfterALossEndsIt) {
  Cable cable(robot->address().port);
  ASSERT_NO_FATAL_FAILURE(recordOn(cable.address()));
  cable.cut();
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Lost; }, kUntilLost));
  cable.mend();
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Connected; }));
  ASSERT_TRUE(film()[0].asBool());
  desktop.window->closeCurrentRobot();
  EXPECT_TRUE(waitUntil([&] { return film()[2] == Ky::KyValue(""); }));
}

TEST_F(FilmGoesOn, APauseChangesNothing) {
  ASSERT_NO_FATAL_FAILURE(recordOn(robot->address()));
  const QPointer<QWidget> before = session->widget();
  robot->process().signal(SIGSTOP);
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Silent; }));
  EXPECT_TRUE(showsThatItRecords());
  robot->process().signal(SIGCONT);
  ASSERT_TRUE(waitUntil([&] { return session->state() == State::Connected; }));
  EXPECT_EQ(session->widget(), before);
  EXPECT_TRUE(showsThatItRecords());
  EXPECT_TRUE(waitUntil([&] { return program->connection() == Ky::KyConnection::Connected; }));
  waitForFrames(3);
  pressRecord();
  EXPECT_GE(framesTold(), 8);
}

TEST_F(FilmGoesOn, ItIsNotShownOnARobotThatWasRestarted) {
  ASSERT_NO_FATAL_FAILURE(recordOn(robot->address()));
  const Ky::KyAddress address = robot->address();
  const QPointer<QWidget> before = session->widget();
  robot->process().signal(SIGKILL);
  robot->process().waitForExit();
  robot = std::make_unique<KyrobotProcess>(
      std::vector<std::string>{"--port", std::to_string(address.port)});
  ASSERT_TRUE(waitUntil([&] { return before.isNull() && session->state() == State::Connected; }));
  EXPECT_EQ(status(), "Press record!");
  EXPECT_TRUE(named<QLineEdit>(*session->widget(), "Video name")->isEnabled());
}

TEST_F(FilmGoesOn, AnotherWindowNeitherShowsNorEndsIt) {
  ASSERT_NO_FATAL_FAILURE(recordOn(robot->address()));
  WindowOnRobots other;
  Lookout::RobotSession* guest = other.play(robot->address());
  ASSERT_NE(guest, nullptr);
  EXPECT_EQ(named<QLabel>(*guest->widget(), "Recording status")->text(), "Press record!");
  other.window->closeCurrentRobot();
  ASSERT_TRUE(waitUntil([&] { return other.window->robots().docks().empty(); }));
  ASSERT_NO_FATAL_FAILURE(waitForFrames(3));
  EXPECT_TRUE(film()[0].asBool());
}

}  // namespace

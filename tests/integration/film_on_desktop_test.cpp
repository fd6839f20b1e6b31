// SPDX-License-Identifier: Apache-2.0
// The whole road of a film, as a person goes it: record, stop, download; two programs and the
// FTP server between them.
#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>

#include "ky/proxy.h"
#include "lookout/settings_of_test.h"
#include "robot/recording/film_facts.h"
#include "support/modal_driver.h"
#include "support/own_network.h"
#include "tests/viewer/download/robot_files.h"
#include "window_on_robots.h"

namespace {

const std::string kFolder = "/home/tam/recordings/cameras/";
constexpr int kFramesASecond = 15;
constexpr int kFiveSeconds = 5 * kFramesASecond;

template <class Named>
Named* named(QWidget& window, const QString& name) {
  for (Named* widget : window.findChildren<Named*>())
    if (widget->accessibleName() == name) return widget;
  return nullptr;
}

// Somebody at a window on a robot whose recordings can be downloaded.
class FilmOnDesktop : public testing::Test {
 protected:
  void SetUp() override {
    NEED_OWN_NETWORK();
    const auto line = robot.process().waitForLine("kyrobot: FTP on 127.0.0.1:21, ");
    ASSERT_TRUE(line) << robot.process().errors();
    password = QString::fromStdString(line->substr(line->rfind(' ') + 1));
    ASSERT_NE(desktop.play(robot.address()), nullptr);
    program = robot.connect();
    recorder = program->getProxy("KyVideoRecorder");
    driver.on<QFileDialog>("Upload video on your computer",
                           [this](QFileDialog& dialog) { chooseFile(dialog); });
    driver.on<QDialog>("Authentication required", [this](QDialog& dialog) { logIn(dialog); });
    driver.on<QDialog>("File Transfer", [](QDialog&) {});
  }
  void TearDown() override {
    if (program) program->shutdown();
  }

  void chooseFile(QFileDialog& dialog) {
    proposed = dialog.selectedFiles().value(0);
    // Pasted, so that no list of completions stands in the way.
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(local);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save),
                      Qt::LeftButton);
  }
  void logIn(QDialog& dialog) const {
    const auto edits = dialog.findChildren<QLineEdit*>();
    QTest::keyClicks(edits[0], "tam");
    QTest::keyClicks(edits[1], password);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                      Qt::LeftButton);
  }

  void pressRecord() {
    for (QPushButton* button : desktop.window->findChildren<QPushButton*>())
      if (button->toolTip() == "Record") return QTest::mouseClick(button, Qt::LeftButton);
    ADD_FAILURE() << "there is no record button";
  }
  void typeName(const QString& name) {
    auto* edit = named<QLineEdit>(*desktop.window, "Video name");
    edit->selectAll();
    QTest::keyClicks(edit, name);
  }
  QString status() { return named<QLabel>(*desktop.window, "Recording status")->text(); }
  // Presses Record and waits until the film has that many frames.
  void record(const QString& name, int frames) {
    typeName(name);
    pressRecord();
    EXPECT_EQ(status(), "Recording " + name + " ... ");
    EXPECT_TRUE(
        waitUntil([&] { return recorder->call<Ky::KyValue>("getState")[1].asInt() >= frames; }));
  }
  // Of a line that says " after N frames".
  int framesIn(const std::string& text) {
    const auto line = robot.process().waitForErrorLine(text);
    EXPECT_TRUE(line) << robot.process().errors();
    return line ? std::stoi(line->substr(line->find(" after ") + 7)) : 0;
  }

  SettingsOfTest settings;
  QTemporaryDir folder;
  QString local;  // where the film shall go
  KyrobotProcess robot{{"--port", "0", "--ftp"}};
  QString password;
  QString proposed;
  WindowOnRobots desktop;
  boost::shared_ptr<Ky::KyBroker> program;
  boost::shared_ptr<Ky::KyProxy> recorder;
  ModalDriver driver;
};

TEST_F(FilmOnDesktop, IsTheRobotsByteForByte) {
  const struct {
    int resolution, width, height;
    QString name, login;
  } films[] = {{1, 320, 240, "small", "Authentication required"}, {3, 1280, 960, "large", ""}};
  for (const auto& [resolution, width, height, name, login] : films) {
    recorder->callVoid("setResolution", resolution);
    local = folder.filePath(name + " on the desktop.avi");
    record(name, kFiveSeconds);
    const auto before = driver.seen().size();
    pressRecord();
    // The file, the login the first time, the progress.
    EXPECT_EQ(driver.seen().mid(before).value(0), "Upload video on your computer");
    EXPECT_EQ(driver.seen().mid(before).contains("Authentication required"), !login.isEmpty());
    EXPECT_EQ(driver.seen().last(), "File Transfer");
    EXPECT_EQ(proposed, QDir::home().absoluteFilePath(name + ".avi"));

    const std::string path = kFolder + name.toStdString() + ".avi";
    const int frames = status().mid(status().indexOf('(') + 1).section(' ', 0, 0).toInt();
    EXPECT_GE(frames, kFiveSeconds);
    EXPECT_EQ(status(), QString("'%1' (%2 frames) was recorded on the robot.\nFile path: %3")
                            .arg(name)
                            .arg(frames)
                            .arg(QString::fromStdString(path)));
    EXPECT_TRUE(contentOf(local.toStdString()) == contentOf(robot.onDisk(path)));
    expectFilm(local.toStdString(), width, height, kFramesASecond, frames);
  }
}

TEST_F(FilmOnDesktop, IsCompleteOnTheRobotWhenTheRobotStops) {
  record("clip", 5);
  robot.process().signal(SIGTERM);
  EXPECT_EQ(robot.process().waitForExit(), 0);
  const int frames = framesIn("clip.avi ends with the robot");
  expectFilm(robot.onDisk(kFolder + "clip.avi"), 320, 240, kFramesASecond, frames);
}

TEST_F(FilmOnDesktop, IsCompleteOnTheRobotWhenTheWindowIsClosed) {
  record("clip", 5);
  desktop.window.reset();
  const int frames = framesIn("clip.avi was stopped");
  expectFilm(robot.onDisk(kFolder + "clip.avi"), 320, 240, kFramesASecond, frames);
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
// From the record button to the file on the desktop.
#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <algorithm>

#include "lookout/settings_of_test.h"
#include "support/modal_driver.h"
#include "support/own_network.h"
#include "support/viewer_on_robot.h"
#include "support/wait.h"
#include "tests/viewer/download/robot_files.h"
#include "viewer/download/ftp_config.h"
#include "viewer/recording/videorecordersettings_widget.h"
#include "viewer/view/widget.h"

namespace {

constexpr auto kSaveTitle = "Upload video on your computer";

Ky::KyValue reportOf(int frames, const std::string& path) {
  return Ky::KyValue::array({frames, path});
}

// A person in front of the viewer's panel. Of the robot, its recorder is scripted.
class Record : public testing::Test {
 protected:
  Record() : widget(viewer.module, PERISCOPE_ICONS, "127.0.0.1", nullptr) {
    viewer.module->setGui(&widget);
    recorder = viewer.robot.add("KyVideoRecorder");
    recorder->answer("startRecording", Ky::KyValue());
    widget.show();
    viewer.robot.takeCalls();
    driver.on<QMessageBox>("Error", [this](QMessageBox& box) {
      told << box.text();
      EXPECT_EQ(box.buttons().size(), 1);
      EXPECT_EQ(box.parentWidget(), &widget);
      QTest::mouseClick(box.buttons().first(), Qt::LeftButton);
    });
    driver.on<QFileDialog>(kSaveTitle, [this](QFileDialog& dialog) {
      proposed = dialog.selectedFiles().value(0);
      filters = dialog.nameFilters();
      dialog.reject();
    });
  }

  void press() {
    for (QPushButton* button : widget.findChildren<QPushButton*>())
      if (button->toolTip() == "Record") QTest::mouseClick(button, Qt::LeftButton);
  }
  void pressAndStop(const Ky::KyValue& report) {
    press();
    recorder->answer("stopRecording", report);
    press();
  }
  // Gives the file's name to the dialog that asks for it.
  void saveAs(const QString& file) {
    driver.on<QFileDialog>(kSaveTitle, [file](QFileDialog& dialog) {
      dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
      QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save),
                        Qt::LeftButton);
    });
  }

  QWidget* tab() { return widget.findChild<VideoRecorderSettingsWidget*>(); }
  QLineEdit* name() { return tab()->findChild<QLineEdit*>(); }
  QString status() { return qobject_cast<QLabel*>(tab()->layout()->itemAt(2)->widget())->text(); }
  // Which of the icon files the record button shows.
  QString icon() {
    for (const QPushButton* button : widget.findChildren<QPushButton*>())
      if (button->toolTip() == "Record")
        for (const char* file : {"record_start.png", "record_stop.png"})
          if (pixels(button->icon()) == pixels(QIcon(QString(PERISCOPE_ICONS) + "buttons/" + file)))
            return file;
    return {};
  }
  static QImage pixels(const QIcon& icon) { return icon.pixmap(QSize(30, 30)).toImage(); }

  SettingsOfTest settings;
  ViewerOnRobot viewer;
  boost::shared_ptr<ScriptedModule> recorder;
  Widget widget;
  ModalDriver driver;
  QStringList told;
  QString proposed;
  QStringList filters;
};

}  // namespace

TEST_F(Record, RefusesANameThatIsNoneAndChangesNothing) {
  for (const char* typed : {"my video", "", "2video", "vid\xC3\xA9o"}) {
    told.clear();
    name()->setText(QString::fromUtf8(typed));
    press();
    EXPECT_EQ(told, QStringList{"Periscope.toggleVideoRecord: Invalid video name."}) << typed;
    EXPECT_EQ(icon(), "record_start.png");
    EXPECT_EQ(status(), "Press record!");
    EXPECT_TRUE(name()->isEnabled());
    EXPECT_EQ(name()->text(), QString::fromUtf8(typed));
  }
  EXPECT_TRUE(viewer.robot.calls().empty());
}

TEST_F(Record, IsNotBlockedByARefusalUnderRemoteControl) {
  QSettings().setValue("Preferences/remoteControl", true);
  name()->setText("my video");
  press();
  EXPECT_TRUE(driver.seen().isEmpty());
}

TEST_F(Record, ShowsThatTheRobotRecordsAndWhatCameOfIt) {
  EXPECT_EQ(icon(), "record_start.png");
  name()->setText("clip");
  press();
  EXPECT_EQ(icon(), "record_stop.png");
  EXPECT_EQ(status(), "Recording clip ... ");
  EXPECT_FALSE(name()->isEnabled());
  EXPECT_TRUE(tab()->isVisible());
  EXPECT_TRUE(driver.seen().isEmpty());

  recorder->answer("stopRecording", reportOf(150, "/home/tam/recordings/cameras/clip.avi"));
  press();
  EXPECT_EQ(icon(), "record_start.png");
  EXPECT_EQ(status(),
            "'clip' (150 frames) was recorded on the robot.\n"
            "File path: /home/tam/recordings/cameras/clip.avi");
  EXPECT_TRUE(name()->isEnabled());
  EXPECT_EQ(proposed, QDir::homePath() + "/clip.avi");
  EXPECT_EQ(filters, QStringList{"Videos (*.avi)"});
  EXPECT_EQ(driver.seen(), QStringList{kSaveTitle});
}

TEST_F(Record, CountsFrames) {
  const std::pair<int, QString> kCounts[] = {{0, "(0 frame)"}, {1, "(1 frame)"}, {2, "(2 frames)"}};
  for (const auto& [count, text] : kCounts) {
    pressAndStop(reportOf(count, "/home/tam/new.avi"));
    EXPECT_TRUE(status().contains(text)) << status().toStdString();
  }
}

TEST_F(Record, ProposesTheLastPartOfThePath) {
  const std::pair<const char*, QString> kPaths[] = {{"/home/tam/a/b.avi", "/b.avi"},
                                                    {"b.avi", "/b.avi"},
                                                    {"/films/with blank.avi", "/with blank.avi"},
                                                    {"/films/\xC3\xA9.avi", "/\u00E9.avi"}};
  for (const auto& [path, expected] : kPaths) {
    pressAndStop(reportOf(2, path));
    EXPECT_EQ(proposed, QDir::homePath() + expected) << path;
  }
}

TEST_F(Record, OffersNothingAfterAStopWithoutAReport) {
  pressAndStop(Ky::KyValue());
  EXPECT_EQ(icon(), "record_stop.png");
  EXPECT_TRUE(driver.seen().isEmpty());
}

TEST_F(Record, ShowsAFailedStartLikeAFinishedFilm) {
  recorder->forget("startRecording");
  name()->setText("clip");
  press();
  EXPECT_EQ(icon(), "record_start.png");
  EXPECT_EQ(status(), "'clip' (0 frame) was recorded on the robot.\nFile path: ");
  EXPECT_TRUE(name()->isEnabled());
  EXPECT_TRUE(driver.seen().isEmpty());
}

TEST_F(Record, DoesNothingWithoutARecorder) {
  const auto kept = std::exchange(viewer.model().fVideoRecorder, nullptr);
  press();
  widget.updateVideoRecorderView();
  EXPECT_EQ(icon(), "record_start.png");
  EXPECT_EQ(status(), "Press record!");
  viewer.model().fVideoRecorder = kept;
}

namespace {

// The state of a widget that recorded this film when it lost its robot.
QByteArray stateWithFilm(const char* film) {
  return QByteArray(R"({"version": 1, "settings": {}, "film": )") + film + "}";
}
const QByteArray kRecordedClip =
    stateWithFilm(R"({"name": "clip", "path": "/home/tam/recordings/cameras/clip_2.avi"})");

// The robot's recorder tells what it does.
class RecordAfterALoss : public Record {
 protected:
  RecordAfterALoss() {
    viewer.robot.remove("KyVideoRecorder");
    recorder = viewer.robot.add("KyVideoRecorder", {"getState"});
    recorder->answer("startRecording", "/home/tam/recordings/cameras/clip_2.avi");
    recorder->answer("getState", stateOf("/home/tam/recordings/cameras/clip_2.avi"));
    EXPECT_TRUE(waitUntil([&] { return viewer.broker->offers("KyVideoRecorder", "getState"); }));
  }
  static Ky::KyValue stateOf(const std::string& path) {
    return Ky::KyValue::array({!path.empty(), 42, path, ""});
  }
  int questions() {
    const auto calls = viewer.robot.calls();
    return static_cast<int>(std::count(calls.begin(), calls.end(), "KyVideoRecorder.getState()"));
  }
  QLabel* notice() { return widget.findChild<QLabel*>("notice"); }
};

}  // namespace

TEST_F(RecordAfterALoss, TheNextWidgetShowsTheFilmThatGoesOn) {
  EXPECT_TRUE(widget.restoreState(kRecordedClip));
  EXPECT_EQ(questions(), 1);
  EXPECT_EQ(icon(), "record_stop.png");
  EXPECT_EQ(status(), "Recording clip ... ");
  EXPECT_EQ(name()->text(), "clip");
  EXPECT_FALSE(name()->isEnabled());
  EXPECT_TRUE(tab()->isVisible());
  ASSERT_NE(notice(), nullptr);
  EXPECT_TRUE(notice()->isVisible());
  EXPECT_EQ(notice()->text(), "Still recording clip: 42 frames up to now");
  EXPECT_TRUE(driver.seen().isEmpty());
}

TEST_F(RecordAfterALoss, TheNextWidgetStopsTheFilmLikeItsOwn) {
  widget.restoreState(kRecordedClip);
  recorder->answer("stopRecording", reportOf(150, "/home/tam/recordings/cameras/clip_2.avi"));
  press();
  EXPECT_EQ(icon(), "record_start.png");
  EXPECT_EQ(status(),
            "'clip' (150 frames) was recorded on the robot.\n"
            "File path: /home/tam/recordings/cameras/clip_2.avi");
  EXPECT_TRUE(name()->isEnabled());
  EXPECT_EQ(proposed, QDir::homePath() + "/clip_2.avi");
  EXPECT_EQ(driver.seen(), QStringList{kSaveTitle});
}

TEST_F(RecordAfterALoss, TheStateTellsOfAFilmForAsLongAsItIsRecorded) {
  const auto film = [this] {
    return QJsonDocument::fromJson(widget.saveState()).object()["film"].toObject();
  };
  EXPECT_EQ(film(), QJsonObject());
  name()->setText("clip");
  press();
  EXPECT_EQ(film(),
            (QJsonObject{{"name", "clip"}, {"path", "/home/tam/recordings/cameras/clip_2.avi"}}));
  recorder->answer("stopRecording", reportOf(150, "/home/tam/recordings/cameras/clip_2.avi"));
  press();
  EXPECT_EQ(film(), QJsonObject());
}

TEST_F(RecordAfterALoss, AFilmThatWasTakenUpIsToldOfAtTheNextLossToo) {
  widget.restoreState(kRecordedClip);
  const QByteArray state = widget.saveState();
  EXPECT_EQ(QJsonDocument::fromJson(state)["film"], QJsonDocument::fromJson(kRecordedClip)["film"]);
}

TEST_F(RecordAfterALoss, AFilmThatEndedOrIsAnothersIsNotShown) {
  for (const char* path : {"", "/home/tam/recordings/cameras/clip.avi"}) {
    recorder->answer("getState", stateOf(path));
    EXPECT_TRUE(widget.restoreState(kRecordedClip));
    EXPECT_EQ(icon(), "record_start.png");
    EXPECT_EQ(status(), "Press record!");
    EXPECT_EQ(name()->text(), "new");
    EXPECT_EQ(notice(), nullptr);
  }
}

TEST_F(RecordAfterALoss, ARobotIsNotAskedAboutAFilmThatNobodyRecorded) {
  for (const char* film : {"{}", "null", "7", R"({"name": "clip"})", R"({"path": 3})"})
    EXPECT_TRUE(widget.restoreState(stateWithFilm(film))) << film;
  EXPECT_TRUE(widget.restoreState(R"({"version": 1, "settings": {}})"));
  EXPECT_EQ(questions(), 0);
  EXPECT_EQ(icon(), "record_start.png");
}

TEST_F(Record, AfterALossAsksNothingOfARobotThatDoesNotOfferToTell) {
  recorder->answer("getState",
                   Ky::KyValue::array({true, 42, "/home/tam/recordings/cameras/clip_2.avi", ""}));
  viewer.robot.takeCalls();
  EXPECT_TRUE(widget.restoreState(kRecordedClip));
  EXPECT_EQ(viewer.robot.calls(), std::vector<std::string>());
  EXPECT_EQ(icon(), "record_start.png");
  EXPECT_EQ(status(), "Press record!");
}

namespace {

class Download : public Record {
 protected:
  void SetUp() override {
    NEED_OWN_NETWORK();
    files.write("recordings/cameras/clip.avi", "the film");
    files.write("films/clip.avi", "another film");
    files.serve(21);
    Dk::FtpConfig::a_login.clear();
    Dk::FtpConfig::a_password.clear();
    driver.on<QDialog>("Authentication required", [this](QDialog& dialog) {
      const auto edits = dialog.findChildren<QLineEdit*>();
      QTest::keyClicks(edits[0], RobotFiles::kUser);
      QTest::keyClicks(edits[1], password);
      QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                        Qt::LeftButton);
    });
    driver.on<QDialog>("File Transfer", [](QDialog&) {});
    saveAs(local);
  }

  RobotFiles files;
  QTemporaryDir folder;
  QString local = folder.filePath("mine.avi");
  QString password = RobotFiles::kPassword;
};

}  // namespace

TEST_F(Download, BringsTheFilmHome) {
  pressAndStop(reportOf(150, "/home/tam/recordings/cameras/clip.avi"));
  EXPECT_EQ(contentOf(local.toStdString()), "the film");
  EXPECT_EQ(driver.seen().mid(0, 2), QStringList({kSaveTitle, "Authentication required"}));
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(Download, TakesAPathOutsideOfTheRobotsHomeAsItIs) {
  for (const char* path : {"/films/clip.avi", "films/clip.avi"}) {
    QFile::remove(local);
    pressAndStop(reportOf(150, path));
    EXPECT_EQ(contentOf(local.toStdString()), "another film") << path;
  }
  for (const char* path : {"/x/home/tam/films/clip.avi", "/HOME/TAM/films/clip.avi"}) {
    QFile::remove(local);
    pressAndStop(reportOf(150, path));
    EXPECT_FALSE(QFile::exists(local)) << path;
  }
}

TEST_F(Download, SaysThatItFailed) {
  pressAndStop(reportOf(150, "/home/tam/missing.avi"));
  EXPECT_EQ(driver.seen().mid(driver.seen().size() - 2), QStringList({"Download failed", "Error"}));
  EXPECT_EQ(told, QStringList{"Failed to upload file."});
  EXPECT_FALSE(QFile::exists(local));
}

TEST_F(Download, SaysThatItFailedWhenTheLoginIsDeclined) {
  driver.on<QDialog>("Authentication required", [](QDialog& dialog) { dialog.reject(); });
  pressAndStop(reportOf(150, "/home/tam/recordings/cameras/clip.avi"));
  EXPECT_EQ(driver.seen(), QStringList({kSaveTitle, "Authentication required", "Error"}));
}

TEST_F(Download, IsNotBegunWhenNoFileIsChosen) {
  driver.on<QFileDialog>(kSaveTitle, [](QFileDialog& dialog) { dialog.reject(); });
  pressAndStop(reportOf(150, "/home/tam/recordings/cameras/clip.avi"));
  EXPECT_EQ(driver.seen(), QStringList{kSaveTitle});
  EXPECT_TRUE(told.isEmpty());
}

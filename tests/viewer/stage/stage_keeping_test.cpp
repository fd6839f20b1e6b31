// SPDX-License-Identifier: Apache-2.0
// What the stage keeps: pictures, the clipboard, films.
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QTemporaryDir>

#include "film/read_film.h"
#include "frames.h"
#include "lookout/settings_of_test.h"
#include "stage_on_robot.h"
#include "viewer/dialogs/notice.h"
#include "viewer/stage/keep_folder.h"
#include "viewer/stage/picture_file.h"

namespace {

class StageKeeping : public testing::Test {
 protected:
  StageKeeping() { setKeepFolder(fFolder.path()); }

  void showPicture() {
    fRobot.publish(plainFrame({320, 240}, 120, 90, 200));
    ASSERT_TRUE(fRobot.waitForFrames(1));
  }
  QString notice() const {
    const auto* shown = fRobot.stage->findChild<Notice*>();
    return shown != nullptr && shown->isVisible() ? shown->text() : QString();
  }
  QStringList files() const { return QDir(fFolder.path()).entryList(QDir::Files, QDir::Name); }
  QString path(const QString& file) const { return fFolder.filePath(file); }
  // What is seen of the picture, without what lies over it.
  QImage seen() { return fRobot.stage->canvas().scene().image(true); }

  SettingsOfTest fSettings;
  QTemporaryDir fFolder;
  StageOnRobot fRobot;
};

TEST_F(StageKeeping, SavesWhatIsSeenAsPng) {
  showPicture();
  fRobot.press(Qt::Key_1);
  fRobot.press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(waitUntil([&] { return notice().startsWith("Saved: "); })) << notice().toStdString();
  ASSERT_EQ(files().size(), 1);
  EXPECT_TRUE(files().first().startsWith("tam 2")) << files().first().toStdString();
  const QImage saved(path(files().first()));
  EXPECT_EQ(saved.size(), fRobot.viewport().view());
  EXPECT_EQ(saved.convertToFormat(QImage::Format_RGB32), seen());
}

TEST_F(StageKeeping, GivesEachPictureANameOfItsOwn) {
  showPicture();
  for (int i = 0; i < 3; ++i) fRobot.press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(waitUntil([&] {
    const QStringList names = files();
    return names.size() == 3 && std::all_of(names.begin(), names.end(), [&](const QString& name) {
             return !QImage(path(name)).isNull();
           });
  }));
}

TEST_F(StageKeeping, SavesWithoutOverlaysWhenToldSo) {
  {
    fRobot.viewer.model().addObjectWatch("figures");
    const Ky::KyCriticalSection lock(fRobot.viewer.model().fObjectsMutex);
    displayObject circle;
    circle.x = circle.y = 0.5;
    circle.colour = 0x00ff00;
    fRobot.viewer.model().fObjects["figures"].fObjects["circle"] = circle;
  }
  showPicture();
  fRobot.press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_TRUE(waitUntil([&] { return notice().startsWith("Saved: "); }));
  const QImage plain = QImage(path(files().first())).convertToFormat(QImage::Format_RGB32);
  EXPECT_NE(plain, seen());
  EXPECT_EQ(plain, fRobot.stage->canvas().scene().image(false));
}

TEST_F(StageKeeping, SaysWhyNothingCouldBeSaved) {
  showPicture();
  setKeepFolder(path("gone"));
  fRobot.press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(waitUntil([&] { return !notice().isEmpty(); }));
  EXPECT_TRUE(notice().contains("can't be written")) << notice().toStdString();
  EXPECT_TRUE(notice().contains("Choose another folder")) << notice().toStdString();
}

TEST_F(StageKeeping, SaysThatThereIsNothingToKeepYet) {
  fRobot.press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(notice(), "There is no picture to save yet.");
  fRobot.press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(notice(), "There is no picture to copy yet.");
  EXPECT_TRUE(files().isEmpty());
}

TEST_F(StageKeeping, AsksWhereToSaveAndRemembersIt) {
  ASSERT_TRUE(QDir(fFolder.path()).mkdir("other"));
  fRobot.press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
  auto* dialog = fRobot.stage->findChild<QFileDialog*>();
  ASSERT_NE(dialog, nullptr);
  dialog->selectFile(path("other"));
  dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
  EXPECT_EQ(keepFolder(), path("other"));
  EXPECT_EQ(notice(), "Pictures and films are saved in " + path("other"));
}

TEST_F(StageKeeping, CopiesWhatIsSeen) {
  showPicture();
  fRobot.press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), seen());
}

TEST_F(StageKeeping, FilmsEachPictureThatIsShown) {
  showPicture();
  fRobot.press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(fRobot.stage->actions().film->text(), "Stop film");
  for (quint64 i = 2; i < 12; ++i) {
    fRobot.publish(plainFrame({320, 240}, static_cast<std::uint8_t>(10 * i)));
    ASSERT_TRUE(fRobot.waitForFrames(i));
  }
  fRobot.press(Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(waitUntil([&] { return notice().startsWith("Film saved: "); }));
  ASSERT_EQ(files().size(), 1);
  const FilmRead film = readFilm(path(files().first()).toStdString());
  EXPECT_EQ(film.times.size(), 12U) << "one that was there, ten that came, and the last again";
  EXPECT_EQ(film.width, fRobot.viewport().view().width() / 2 * 2);
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(fRobot.stage->actions().film->text(), "Film");
}

TEST_F(StageKeeping, GoesOnFilmingInAnotherSizeAndBehindOtherWindows) {
  showPicture();
  const int width = fRobot.viewport().view().width() / 2 * 2;
  fRobot.press(Qt::Key_R, Qt::ControlModifier);
  fRobot.stage->resize(500, 400);
  fRobot.publish(plainFrame({320, 240}, 200));
  ASSERT_TRUE(fRobot.waitForFrames(2));
  fRobot.stage->hide();
  fRobot.publish(plainFrame({320, 240}, 100));
  ASSERT_TRUE(waitUntil([&] { return fRobot.stage->canvas().scene().frame()->number == 3; }));
  fRobot.stage->actions().film->trigger();
  ASSERT_TRUE(waitUntil([&] { return fRobot.stage->actions().film->text() == "Film"; }));
  fRobot.stage.reset();
  ASSERT_EQ(files().size(), 1);
  const FilmRead film = readFilm(path(files().first()).toStdString());
  EXPECT_EQ(film.times.size(), 4U);
  EXPECT_EQ(film.width, width);
}

TEST_F(StageKeeping, FinishesItsFilmWhenItGoes) {
  showPicture();
  fRobot.press(Qt::Key_R, Qt::ControlModifier);
  fRobot.publish(plainFrame({320, 240}, 200));
  ASSERT_TRUE(fRobot.waitForFrames(2));
  fRobot.stage.reset();
  ASSERT_EQ(files().size(), 1);
  EXPECT_EQ(readFilm(path(files().first()).toStdString()).times.size(), 2U);
}

TEST_F(StageKeeping, SaysWhyThereIsNoFilm) {
  showPicture();
  setKeepFolder(path("gone"));
  fRobot.press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_FALSE(notice().isEmpty());
  EXPECT_EQ(fRobot.stage->actions().film->text(), "Film");
}

// What came of it.
QString written(const QString& path) {
  std::optional<QString> result;
  QObject::connect(PictureWriter::write(QImage(10, 10, QImage::Format_RGB32), path),
                   &PictureWriter::ended, [&](const QString& problem) { result = problem; });
  return waitUntil([&] { return result.has_value(); }) ? *result : "nothing came of it";
}

TEST(PictureWriter, WritesWhatIsWhole) {
  const QTemporaryDir folder;
  const QString path = folder.filePath("a.png");
  EXPECT_EQ(written(path), "");
  EXPECT_EQ(QImage(path).size(), QSize(10, 10));
}

TEST(PictureWriter, ReplacesNothing) {
  const QTemporaryDir folder;
  const QString path = folder.filePath("a.png");
  QFile before(path);
  ASSERT_TRUE(before.open(QIODevice::WriteOnly));
  before.write("precious");
  before.close();
  EXPECT_TRUE(written(path).contains(path));
  ASSERT_TRUE(before.open(QIODevice::ReadOnly));
  EXPECT_EQ(before.readAll(), "precious");
}

}  // namespace

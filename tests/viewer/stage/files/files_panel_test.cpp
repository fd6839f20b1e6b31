// SPDX-License-Identifier: Apache-2.0
// What the panel of files shows, and what it says when there is nothing to show.
#include <QDialog>
#include <QDialogButtonBox>
#include <QScrollBar>
#include <QVBoxLayout>

#include "support/ftp_processes.h"
#include "tests/viewer/stage/files/files_panel_fixture.h"

namespace {

const QColor kOrange(230, 120, 20);

// What the panel shows of a file where its picture is.
QColor shownPicture(QAbstractItemView& list, int row) {
  const QRect place = list.visualRect(list.model()->index(row, 0));
  const QImage seen = list.viewport()->grab(place).toImage();
  return seen.pixelColor(place.height() / 4, place.height() / 4);
}

QDialog* loginDialog(const QWidget& panel) {
  auto* dialog = panel.findChild<QDialog*>();
  return dialog != nullptr && dialog->isVisible() ? dialog : nullptr;
}

void typeLogin(QDialog& dialog, const char* password) {
  const auto edits = dialog.findChildren<QLineEdit*>();
  QTest::keyClicks(edits[0], RobotFiles::kUser);
  QTest::keyClicks(edits[1], password);
  QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                    Qt::LeftButton);
}

}  // namespace

TEST_F(Panel, ShowsWhatTheRobotRecordedNewestFirst) {
  record("clip.avi", filmOf(Qt::blue), 20);
  record("lookout_photo.jpg", photoOf(kOrange), 10);
  record("lookout_photo_2.jpg", photoOf(Qt::green));
  record("notes.txt", "text", 30);
  record("broken.avi", "no film", 40);
  record("broken.jpg", photoOf(Qt::blue).substr(0, 40), 50);
  robot.write("recordings/cameras/folder/clip.avi", "");
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(6));
  EXPECT_EQ(names(), QStringList({"lookout_photo_2.jpg", "lookout_photo.jpg", "clip.avi",
                                  "notes.txt", "broken.avi", "broken.jpg"}));
  ASSERT_TRUE(waitForThumbnail("clip.avi"));
  EXPECT_TRUE(isLike(shownPicture(list(), 0), Qt::green));
  EXPECT_TRUE(isLike(shownPicture(list(), 1), kOrange));
  EXPECT_TRUE(isLike(shownPicture(list(), 2), Qt::blue));
  EXPECT_EQ(message(), "");
  // And leaves the robot alone then.
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
  for (const char* name : {"notes.txt", "broken.avi", "broken.jpg"})
    EXPECT_FALSE(model().hasThumbnail(rowOf(name))) << name;
}

TEST_F(Panel, SaysOfAFileHowLargeAndOldItIs) {
  record("clip.avi", std::string(1500, 'x'));
  std::filesystem::last_write_time(robot / "recordings/cameras/clip.avi",
                                   std::chrono::file_clock::from_sys(
                                       std::chrono::sys_seconds(std::chrono::seconds(1700000000))));
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  const QString time = QLocale().toString(QDateTime::fromSecsSinceEpoch(1700000000).toLocalTime(),
                                          QLocale::ShortFormat);
  EXPECT_EQ(model().details(0), "1.5 kB, " + time);
  EXPECT_EQ(model().data(model().index(0), Qt::AccessibleTextRole).toString(),
            "clip.avi, 1.5 kB, " + time);
}

TEST_F(Panel, ConnectsToNobodyBeforeItIsShown) {
  logInBefore();
  panel = std::make_unique<FilesPanel>("127.0.0.1", nullptr);
  panel->refresh();
  EXPECT_FALSE(waitUntil([] { return !ftpProcesses().empty(); }, std::chrono::milliseconds(300)));
}

TEST_F(Panel, LooksAgainWhenItIsShownAndWhenItIsTold) {
  record("a.jpg", photoOf(kOrange), 10);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  record("b.avi", "film", 5);
  panel->hide();
  panel->show();
  ASSERT_TRUE(waitForFiles(2));
  record("c.avi", "film");
  panel->refresh();
  ASSERT_TRUE(waitForFiles(3));
  std::filesystem::remove(robot / "recordings/cameras/b.avi");
  action("Refresh").trigger();
  ASSERT_TRUE(waitForFiles(2));
  EXPECT_EQ(names(), QStringList({"c.avi", "a.jpg"}));
}

TEST_F(Panel, KeepsWhatIsSelectedWhenItLooksAgain) {
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) record(name, photoOf(kOrange), 10);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(3));
  ASSERT_TRUE(waitForThumbnail("c.jpg"));
  select({"a.jpg", "c.jpg"});
  record("new.jpg", photoOf(kOrange));
  panel->refresh();
  ASSERT_TRUE(waitForFiles(4));
  QStringList selected;
  for (const QModelIndex& index : list().selectionModel()->selectedIndexes())
    selected << index.data().toString();
  selected.sort();
  EXPECT_EQ(selected, QStringList({"a.jpg", "c.jpg"}));
  EXPECT_TRUE(model().hasThumbnail(rowOf("c.jpg")));
}

TEST_F(Panel, FindsThumbnailsOfEarlier) {
  record("lookout_photo.jpg", photoOf(kOrange));
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  ASSERT_TRUE(waitForThumbnail("lookout_photo.jpg"));
  panel.reset();
  // So that it could not be fetched once more.
  std::filesystem::permissions(robot / "recordings/cameras/lookout_photo.jpg",
                               std::filesystem::perms::none);
  show();
  ASSERT_TRUE(waitForFiles(1));
  ASSERT_TRUE(waitForThumbnail("lookout_photo.jpg"));
  EXPECT_TRUE(isLike(model().thumbnail(0).pixelColor(9, 9), kOrange));
}

TEST_F(Panel, FetchesThumbnailsOfWhatIsInSightOnly) {
  const std::string photo = photoOf(kOrange, {64, 48});
  for (int i = 0; i < 1000; ++i) record("photo_" + std::to_string(i) + ".jpg", photo, i);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1000));
  const auto shown = [this] {
    int count = 0;
    for (int row = 0; row < 1000; ++row) count += model().hasThumbnail(row) ? 1 : 0;
    return count;
  };
  ASSERT_TRUE(waitForThumbnail("photo_7.jpg"));
  ASSERT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
  EXPECT_LE(shown(), 12);
  list().scrollToBottom();
  ASSERT_TRUE(waitForThumbnail("photo_999.jpg"));
  ASSERT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
  EXPECT_LE(shown(), 24);
  EXPECT_FALSE(model().hasThumbnail(500));
  record("new.jpg", photo, -10);
  const int scrolled = list().verticalScrollBar()->value();
  panel->refresh();
  ASSERT_TRUE(waitForFiles(1001));
  EXPECT_EQ(list().verticalScrollBar()->value(), scrolled);
}

TEST_F(Panel, HasAsManyColumnsAsThereIsRoomFor) {
  for (int i = 0; i < 6; ++i) record(std::to_string(i) + ".txt", "");
  logInBefore();
  show({300, 500});
  ASSERT_TRUE(waitForFiles(6));
  const auto place = [this](int row) { return list().visualRect(model().index(row)); };
  EXPECT_EQ(place(0).topLeft(), QPoint(0, 0));
  EXPECT_EQ(place(1).topLeft(), QPoint(0, place(0).height()));
  EXPECT_GT(place(0).width(), 270);
  panel->resize(900, 600);
  ASSERT_TRUE(waitUntil([&] { return place(1).top() == 0; }));
  EXPECT_EQ(place(1).left(), place(0).width());
  EXPECT_EQ(place(3).topLeft(), QPoint(0, place(0).height()));
  EXPECT_FALSE(list().horizontalScrollBar()->isVisible());
}

TEST_F(Panel, SaysThatNothingWasRecorded) {
  logInBefore();
  show();
  const QString text = "There are no photos and films on the robot yet.";
  EXPECT_TRUE(waitUntil([&] { return message() == text; })) << message().toStdString();
  EXPECT_FALSE(messageButton()->isVisible());
  robot.write("recordings/cameras/folder/file", "");
  panel->refresh();
  EXPECT_EQ(message(), "Looking...");
  EXPECT_TRUE(waitUntil([&] { return message() == text; }));
  record("a.txt", "");
  panel->refresh();
  EXPECT_TRUE(waitForFiles(1));
  EXPECT_EQ(message(), "");
  EXPECT_TRUE(list().isVisible());
}

TEST_F(Panel, SaysThatThereIsNoServerAndTriesAgain) {
  robot.stopServing();
  record("a.txt", "");
  show();
  const QString text =
      "The robot's files can't be reached: 127.0.0.1, port 21: Connection refused.\nIs the robot "
      "on, and does its FTP server run?";
  ASSERT_TRUE(waitUntil([&] { return message() == text; })) << message().toStdString();
  robot.serve(21);
  logInBefore();
  EXPECT_EQ(messageButton()->text(), "Try Again");
  QTest::mouseClick(messageButton(), Qt::LeftButton);
  EXPECT_TRUE(waitForFiles(1));
}

TEST_F(Panel, ShowsWhatItKnewWhenTheRobotIsGone) {
  record("a.txt", "");
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  robot.stopServing();
  panel->refresh();
  ASSERT_TRUE(waitUntil([&] { return message().contains("Connection refused"); }));
  EXPECT_TRUE(list().isVisible());
  EXPECT_EQ(names(), QStringList("a.txt"));
}

TEST_F(Panel, AsksForTheLoginWhenTheUserWantsToLogIn) {
  record("a.txt", "");
  show();
  ASSERT_TRUE(waitUntil([&] { return message() == "The robot shows its files after a login."; }));
  EXPECT_EQ(loginDialog(*panel), nullptr);
  QTest::mouseClick(messageButton(), Qt::LeftButton);
  ASSERT_NE(loginDialog(*panel), nullptr);
  typeLogin(*loginDialog(*panel), RobotFiles::kPassword);
  ASSERT_TRUE(waitForFiles(1));
  EXPECT_EQ(message(), "");
  panel.reset();
  show();  // asks nobody
  EXPECT_TRUE(waitForFiles(1));
}

TEST_F(Panel, AsksAgainWhenTheLoginIsWrong) {
  record("a.txt", "");
  show();
  ASSERT_TRUE(waitUntil([&] { return messageButton()->isVisible(); }));
  QTest::mouseClick(messageButton(), Qt::LeftButton);
  typeLogin(*loginDialog(*panel), "wrong");
  const QString refused = "The robot refused the user name or the password.";
  ASSERT_TRUE(waitUntil([&] { return message() == refused; }));
  EXPECT_FALSE(Dk::ftpLoginOf("127.0.0.1").isComplete());
  ASSERT_TRUE(waitUntil([&] { return loginDialog(*panel) != nullptr; }));
  typeLogin(*loginDialog(*panel), RobotFiles::kPassword);
  EXPECT_TRUE(waitForFiles(1));
}

TEST_F(Panel, AsksNobodyUnaskedWhenAnOldLoginIsWrong) {
  Dk::keepFtpLogin("127.0.0.1", {RobotFiles::kUser, "of yesterday"});
  show();
  ASSERT_TRUE(waitUntil([&] { return message().startsWith("The robot refused"); }));
  EXPECT_EQ(loginDialog(*panel), nullptr);
  EXPECT_EQ(messageButton()->text(), "Log In...");
}

TEST_F(Panel, MayBeDeletedAtAnyTime) {
  for (int i = 0; i < 30; ++i) record(std::to_string(i) + ".jpg", photoOf(kOrange), i);
  logInBefore();
  for (int turns = 0; turns < 60; ++turns) {
    show();
    for (int turn = 0; turn < turns; ++turn) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
      if (turn == 20) trigger("Download", names().mid(0, 3));
    }
    panel.reset();
  }
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
  for (const QString& name : keptFiles()) {
    EXPECT_FALSE(name.contains("part")) << name.toStdString();
    EXPECT_EQ(keptContent(name), photoOf(kOrange)) << name.toStdString();
  }
}

TEST_F(Panel, GoesOnWhileTheServerIsFrozen) {
  for (int i = 0; i < 30; ++i) record(std::to_string(i) + ".jpg", photoOf(kOrange), i);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(30));
  RobotFiles::signalSessions(SIGSTOP);
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
  timer.start(10);
  EXPECT_TRUE(waitUntil([&] { return ticks >= 20; }));
  panel.reset();
  RobotFiles::signalSessions(SIGCONT);
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
}

TEST_F(Panel, IsUsedFromTheKeyboard) {
  record("a.jpg", photoOf(kOrange), 10);
  record("b.jpg", photoOf(kOrange));
  logInBefore();
  show();
  panel->setFocus();
  ASSERT_TRUE(waitForFiles(2));
  EXPECT_TRUE(list().hasFocus());
  QTest::keyClick(&list(), Qt::Key_Down);
  QTest::keyClick(&list(), Qt::Key_Home);
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "/home/tam/recordings/cameras/b.jpg");
  QTest::keyClick(&list(), Qt::Key_Down);
  QTest::keyClick(&list(), Qt::Key_D, Qt::ControlModifier);
  EXPECT_TRUE(waitForState("a.jpg", DownloadState::Done));
  record("c.txt", "");
  QTest::keyClick(&list(), Qt::Key_F5);
  EXPECT_TRUE(waitForFiles(3));
  EXPECT_EQ(list().accessibleName(), "Photos and films on the robot");
}

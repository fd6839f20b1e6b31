// SPDX-License-Identifier: Apache-2.0
// What the panel of files brings home.
#include <QDesktopServices>
#include <QFileDialog>

#include "support/ftp_processes.h"
#include "tests/viewer/stage/files/files_panel_fixture.h"

namespace {

// What the desktop would open.
class Opened : public QObject {
  Q_OBJECT

 public:
  Opened() { QDesktopServices::setUrlHandler("file", this, "open"); }
  ~Opened() override { QDesktopServices::unsetUrlHandler("file"); }

  QStringList paths;

 public slots:
  void open(const QUrl& url) { paths << url.toLocalFile(); }
};

}  // namespace

TEST_F(Panel, DownloadsWhatIsSelected) {
  record("a.jpg", photoOf(Qt::red), 10);
  record("b.avi", "the film", 20);
  record("c.txt", "text", 30);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(3));
  trigger("Download", {"a.jpg", "b.avi"});
  ASSERT_TRUE(waitForState("b.avi", DownloadState::Done));
  ASSERT_TRUE(waitForState("a.jpg", DownloadState::Done));
  EXPECT_EQ(keptFiles(), QStringList({"a.jpg", "b.avi"}));
  EXPECT_EQ(keptContent("b.avi"), "the film");
  EXPECT_EQ(QFileInfo(kept.filePath("b.avi")).lastModified().toSecsSinceEpoch(),
            model().file(rowOf("b.avi")).time.toSecsSinceEpoch());
  EXPECT_TRUE(model().details(rowOf("b.avi")).endsWith(", downloaded"));
  trigger("Download", {"b.avi"});
  ASSERT_TRUE(waitUntil([&] { return keptFiles().contains("b (2).avi"); }));
  EXPECT_EQ(keptFiles().size(), 3);
}

TEST_F(Panel, ShowsHowFarADownloadIs) {
  constexpr qint64 kSize = 200 << 20;
  record("big.avi", "");
  std::filesystem::resize_file(robot / "recordings/cameras/big.avi", kSize);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  qint64 read = 0;
  int between = 0;
  QImage before = list().viewport()->grab().toImage();
  int looks = 0;
  QObject::connect(&model(), &FilesModel::dataChanged, panel.get(), [&] {
    const DownloadState& state = stateOf("big.avi");
    if (state.kind != DownloadState::Running) return;
    EXPECT_GE(state.readBytes, read);
    EXPECT_EQ(state.totalBytes, kSize);
    between += state.readBytes > 0 && state.readBytes < kSize ? 1 : 0;
    read = state.readBytes;
    const QImage now = list().viewport()->grab().toImage();
    looks += now != std::exchange(before, now) ? 1 : 0;
    EXPECT_TRUE(model().details(0).endsWith(" of 209.7 MB")) << model().details(0).toStdString();
  });
  trigger("Download", {"big.avi"});
  ASSERT_TRUE(waitForState("big.avi", DownloadState::Done));
  EXPECT_GT(between, 0);
  EXPECT_GT(looks, 1);
  EXPECT_EQ(QFileInfo(kept.filePath("big.avi")).size(), kSize);
}

TEST_F(Panel, CancelsDownloadsAndLeavesNothingOfThem) {
  record("endless.avi", "", 10);
  std::filesystem::resize_file(robot / "recordings/cameras/endless.avi", std::uintmax_t{1} << 40);
  record("next.avi", "next", 20);
  record("last.avi", "last", 30);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(3));
  EXPECT_FALSE(action("Cancel").isEnabled());
  trigger("Download", names());
  ASSERT_TRUE(waitUntil([&] { return stateOf("endless.avi").readBytes > 0; }));
  EXPECT_EQ(stateOf("next.avi").kind, DownloadState::Waiting);
  EXPECT_EQ(keptFiles(), QStringList(".endless.avi.part"));
  trigger("Cancel", {"next.avi"});
  EXPECT_EQ(stateOf("next.avi").kind, DownloadState::None);
  EXPECT_EQ(stateOf("endless.avi").kind, DownloadState::Running);
  trigger("Cancel", {"endless.avi"});
  EXPECT_EQ(stateOf("endless.avi").kind, DownloadState::None);
  ASSERT_TRUE(waitForState("last.avi", DownloadState::Done));
  EXPECT_EQ(keptFiles(), QStringList("last.avi"));
}

TEST_F(Panel, SaysWhyADownloadBrokeAndTriesAgain) {
  record("film.avi", "");
  std::filesystem::resize_file(robot / "recordings/cameras/film.avi", std::uintmax_t{1} << 40);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  trigger("Download", {"film.avi"});
  ASSERT_TRUE(waitUntil([&] { return stateOf("film.avi").readBytes > 0; }));
  RobotFiles::signalSessions(SIGKILL);
  ASSERT_TRUE(waitForState("film.avi", DownloadState::Failed));
  EXPECT_EQ(model().details(0), "Not downloaded: The connection to the server was lost.");
  EXPECT_EQ(keptFiles(), QStringList());
  std::filesystem::resize_file(robot / "recordings/cameras/film.avi", 100);
  trigger("Download", {"film.avi"});
  ASSERT_TRUE(waitForState("film.avi", DownloadState::Done));
  EXPECT_EQ(keptContent("film.avi"), std::string(100, '\0'));
}

TEST_F(Panel, SaysThatADownloadCanNotBeSaved) {
  record("a.avi", "a", 1);
  record("b.avi", "b");
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(2));
  setKeepFolder(kept.filePath("gone"));
  trigger("Download", {"a.avi", "b.avi"});
  ASSERT_TRUE(waitForState("b.avi", DownloadState::Failed));
  ASSERT_TRUE(waitForState("a.avi", DownloadState::Failed));
  EXPECT_EQ(model().details(0), "Not downloaded: It can't be saved in " + kept.filePath("gone") +
                                    ": No such file or directory.");
}

TEST_F(Panel, DownloadsToAnotherFolderAndRemembersIt) {
  record("a.avi", "a");
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  const QTemporaryDir other;
  trigger("Download To...", {"a.avi"});
  auto* dialog = panel->findChild<QFileDialog*>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->directory().path(), kept.path());
  dialog->fileSelected(other.path());
  dialog->close();
  ASSERT_TRUE(waitForState("a.avi", DownloadState::Done));
  EXPECT_EQ(stateOf("a.avi").path, other.filePath("a.avi"));
  EXPECT_EQ(keepFolder(), other.path());
}

TEST_F(Panel, OpensPhotosAndFilms) {
  Opened opened;
  record("a.jpg", photoOf(Qt::red), 10);
  record("b.avi", "the film", 20);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(2));
  list().setFocus();
  list().setCurrentIndex(model().index(rowOf("b.avi")));
  QTest::keyClick(&list(), Qt::Key_Return);
  ASSERT_TRUE(waitUntil([&] { return opened.paths.size() == 1; }));
  EXPECT_TRUE(opened.paths[0].startsWith(cache.path() + '/'));
  EXPECT_TRUE(opened.paths[0].endsWith("/b.avi"));
  EXPECT_EQ(contentOf(opened.paths[0].toStdString()), "the film");
  EXPECT_EQ(stateOf("b.avi").kind, DownloadState::None);  // not where the user keeps files
  EXPECT_EQ(keptFiles(), QStringList());

  const QPoint middle = list().visualRect(model().index(rowOf("a.jpg"))).center();
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middle);
  QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middle);
  ASSERT_TRUE(waitUntil([&] { return opened.paths.size() == 2; }));
  EXPECT_TRUE(opened.paths[1].endsWith("/a.jpg"));
}

TEST_F(Panel, OpensWhatIsHereAlreadyWithoutTheRobot) {
  Opened opened;
  record("b.avi", "the film");
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  trigger("Download", {"b.avi"});
  ASSERT_TRUE(waitForState("b.avi", DownloadState::Done));
  robot.stopServing();
  trigger("Open", {"b.avi"});
  EXPECT_EQ(opened.paths, QStringList(kept.filePath("b.avi")));
}

TEST_F(Panel, OpensNoPrograms) {
  Opened opened;
  record("run.desktop", "");
  record("a.jpg", "", 1);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(2));
  select({"run.desktop"});
  EXPECT_FALSE(action("Open").isEnabled());
  EXPECT_TRUE(action("Download").isEnabled());
  const QPoint middle = list().visualRect(model().index(rowOf("run.desktop"))).center();
  QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middle);
  select({"a.jpg"});
  EXPECT_TRUE(action("Open").isEnabled());
  select({"a.jpg", "run.desktop"});
  EXPECT_FALSE(action("Open").isEnabled());
  EXPECT_EQ(opened.paths, QStringList());
  EXPECT_EQ(stateOf("run.desktop").kind, DownloadState::None);
}

TEST_F(Panel, CopiesThePathsOnTheRobot) {
  record("a.jpg", "", 1);
  record("b c.avi", "");
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(2));
  trigger("Copy Path", {"b c.avi", "a.jpg"});
  EXPECT_EQ(QGuiApplication::clipboard()->text(),
            "/home/tam/recordings/cameras/b c.avi\n/home/tam/recordings/cameras/a.jpg");
}

TEST_F(Panel, LeavesNothingOfADownloadWhenItIsDeleted) {
  record("endless.avi", "");
  std::filesystem::resize_file(robot / "recordings/cameras/endless.avi", std::uintmax_t{1} << 40);
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  trigger("Download", {"endless.avi"});
  ASSERT_TRUE(waitUntil([&] { return stateOf("endless.avi").readBytes > 0; }));
  panel.reset();
  EXPECT_EQ(keptFiles(), QStringList());
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
}

TEST_F(Panel, GoesOnDownloadingWhileItIsHidden) {
  record("a.avi", std::string(5 << 20, 'x'));
  logInBefore();
  show();
  ASSERT_TRUE(waitForFiles(1));
  trigger("Download", {"a.avi"});
  panel->hide();
  EXPECT_TRUE(waitForState("a.avi", DownloadState::Done));
}

#include "files_panel_downloads_test.moc"

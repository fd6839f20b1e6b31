// SPDX-License-Identifier: Apache-2.0
// Films that can't be made, or can't go on: what is told, and what is left.
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QPointer>
#include <array>
#include <csignal>
#include <thread>

#include "filming.h"
#include "support/log_capture.h"
#include "support/own_network.h"
#include "viewer/stage/film/film_thread.h"

namespace {

// All that comes out of a pipe, until its other end is closed.
std::string readAll(const std::string& pipe) {
  const int fd = open(pipe.c_str(), O_RDONLY | O_CLOEXEC);
  std::string all;
  std::array<char, 65536> part{};
  for (ssize_t got = 0; (got = read(fd, part.data(), part.size())) > 0;)
    all.append(part.data(), static_cast<std::size_t>(got));
  close(fd);
  return all;
}

class FilmFailures : public Filming {
 protected:
  bool mountHere(unsigned long flags, const char* options) const {
    return mount("none", fileOf(folder.path()).c_str(), "tmpfs", flags, options) == 0;
  }
  QString name() const { return QFileInfo(recorder->path()).fileName(); }
  // It can be played, with some of the pictures.
  void expectFilm(const QString& path) const {
    const std::size_t pictures = readFilm(fileOf(path)).times.size();
    EXPECT_GT(pictures, 10u);
    EXPECT_LT(pictures, static_cast<std::size_t>(number));
  }
};

TEST_F(FilmFailures, EndWhatCanBePlayedWhenTheDiskIsFull) {
  NEED_OWN_NETWORK();
  if (!mountHere(0, "size=4m")) GTEST_SKIP() << "no mounts of our own";
  LogCapture log;
  begin();
  addUntilTheEnd({noise(), noise(), noise()});
  EXPECT_FALSE(recorder->isFilming());
  EXPECT_EQ(errorOf(recorder->path()),
            "There is no more room in the folder " + folder.path() + " for the film \"" + name() +
                "\". Make room there or choose another folder, and film again.");
  expectFilm(recorder->path());
  ASSERT_FALSE(log.lines().empty());
  EXPECT_EQ(log.lines().front(),
            "error film: can't write '" + fileOf(recorder->path()) + "': No space left on device");
  umount(fileOf(folder.path()).c_str());
}

TEST_F(FilmFailures, EndWhatCanBePlayedWhenTheFileMayNotGrow) {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{4 << 20, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  begin();
  addUntilTheEnd({noise(), noise(), noise()});
  EXPECT_EQ(errorOf(recorder->path()),
            "The film \"" + name() + "\" can't grow any larger in the folder " + folder.path() +
                ". Film again for the rest, or choose another folder.");
  expectFilm(recorder->path());
}

TEST_F(FilmFailures, AreToldBeforeTheFilmBegins) {
  EXPECT_EQ(recorder->begin(folder.filePath("no"), "kitchen", kFilmSize, 30),
            "The folder " + folder.filePath("no") +
                " isn't there. Choose another folder, and film again.");
  EXPECT_FALSE(recorder->isFilming());
  add(flat(Qt::gray));
  recorder->end();
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(FilmFailures, NameAFolderThatCannotBeWrittenTo) {
  NEED_OWN_NETWORK();
  if (!mountHere(MS_RDONLY, nullptr)) GTEST_SKIP() << "no mounts of our own";
  EXPECT_EQ(recorder->begin(folder.path(), "kitchen", kFilmSize, 30),
            "The folder " + folder.path() +
                " can't be written to. Choose another folder, and film again.");
  umount(fileOf(folder.path()).c_str());
}

TEST_F(FilmFailures, NoticeThatTheFileWasMoved) {
  begin();
  for (int i = 0; i < 15; ++i) add(flat(Qt::gray));
  ASSERT_TRUE(waitUntil([&] { return QFile(recorder->path()).size() > 0; }));
  const QString moved = folder.filePath("moved.mkv");
  ASSERT_EQ(rename(fileOf(recorder->path()).c_str(), fileOf(moved).c_str()), 0);
  addUntilTheEnd({flat(Qt::gray)});
  EXPECT_EQ(errorOf(recorder->path()), "The film \"" + name() + "\" is no longer in the folder " +
                                           folder.path() +
                                           ": it was moved or deleted. Film again, and leave it "
                                           "there until its end.");
  EXPECT_GT(readFilm(fileOf(moved)).times.size(), 0u);
}

TEST_F(FilmFailures, NoticeThatTheFolderIsGone) {
  begin();
  add(flat(Qt::gray));
  ASSERT_TRUE(waitUntil([&] { return QFile(recorder->path()).size() > 0; }));
  ASSERT_TRUE(QDir(folder.path()).removeRecursively());
  addUntilTheEnd({flat(Qt::gray)});
  EXPECT_EQ(errorOf(recorder->path()),
            "The folder " + folder.path() + " isn't there. Choose another folder, and film again.");
}

TEST_F(FilmFailures, LeaveNoFileWithoutAPicture) {
  begin();
  const QString path = recorder->path();
  recorder->end();
  EXPECT_EQ(errorOf(path), "There is no film \"" + name() +
                               "\": no picture was shown while it was filmed. Play the camera, and "
                               "film again.");
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(FilmFailures, NameWhatTheEncoderDoesNotTake) {
  const QSize wide(20000, 16);
  begin(wide);
  add(flat(Qt::gray, wide));
  const QString error = errorOf(recorder->path());
  EXPECT_TRUE(error.startsWith("The film \"" + name() + "\" can't go on: the film's encoder "))
      << error.toStdString();
  EXPECT_TRUE(error.endsWith(". Film again, smaller perhaps.")) << error.toStdString();
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

// A film into a pipe: the disk stands still until somebody reads.
class StandingDisk : public Filming {
 protected:
  StandingDisk() {
    EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    thread = std::make_unique<FilmThread>(folder.filePath("pipe"), kFilmSize, 30);
    thread->start();
  }

  const std::string pipe = fileOf(folder.filePath("pipe"));
  std::unique_ptr<FilmThread> thread;
};

TEST_F(StandingDisk, CostsPicturesThatAreCountedAndHoldsNobodyUp) {
  int dropped = -1;
  QObject::connect(thread.get(), &FilmThread::progressed, thread.get(),
                   [&](qint64, qint64, int count) { dropped = count; });
  std::optional<FilmEnd> end;
  QObject::connect(thread.get(), &FilmThread::ended, thread.get(),
                   [&](const FilmEnd& told) { end = told; });
  const QImage image = flat(Qt::gray);
  const int most = static_cast<int>(FilmThread::kMostBytes / image.sizeInBytes());
  for (int i = 0; i < most + 50; ++i) thread->add(image, i * kFilmPeriod);
  thread->close();
  const std::string film = readAll(pipe);
  ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
  EXPECT_EQ(end->problem, FilmEnd::None) << end->reason.toStdString();
  EXPECT_GE(dropped, 49);  // one may have been taken out already
  EXPECT_EQ(end->dropped, dropped);
  QFile copy(folder.filePath("copy.mkv"));
  ASSERT_TRUE(copy.open(QIODevice::WriteOnly));
  copy.write(film.data(), static_cast<qint64>(film.size()));
  copy.close();
  EXPECT_EQ(readFilm(fileOf(copy.fileName())).times.size(),
            static_cast<std::size_t>(most + 50 - dropped));
}

TEST_F(StandingDisk, IsNotWaitedForAtTheEnd) {
  thread->add(flat(Qt::gray), 0);
  const QPointer<FilmThread> left = thread.get();
  thread->closeSoon();
  FilmThread::letGo(std::move(thread));
  ASSERT_TRUE(left);
  EXPECT_TRUE(left->isRunning());
  readAll(pipe);
  EXPECT_TRUE(waitUntil([&] { return left.isNull(); })) << "it goes by itself";
}

}  // namespace

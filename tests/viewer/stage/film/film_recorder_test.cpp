// SPDX-License-Identifier: Apache-2.0
// Films as the stage makes them, read by other programs.
#include "viewer/stage/film/film_recorder.h"

#include <sys/resource.h>

#include <QDateTime>
#include <QRegularExpression>
#include <csignal>

#include "filming.h"

namespace {

// How nice the thread of this name is; nothing when there is none.
std::optional<int> nicenessOf(const QString& thread) {
  for (const QString& task : QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile name("/proc/self/task/" + task + "/comm");
    if (name.open(QIODevice::ReadOnly) && name.readAll().trimmed() == thread.toUtf8())
      return getpriority(PRIO_PROCESS, task.toUInt());
  }
  return std::nullopt;
}

// As the film itself says, in s; 0 for one that was not finished.
double durationOf(const std::string& path) {
  Process ffprobe("ffprobe",
                  {"-v", "error", "-of", "csv=p=0", "-show_entries", "format=duration", path});
  ffprobe.waitForExit();
  return QString::fromStdString(ffprobe.output()).toDouble();
}

QByteArray bytesOf(const QString& path) {
  QFile file(path);
  file.open(QIODevice::ReadOnly);
  return file.readAll();
}

TEST_F(Filming, KeepsWhatIsShownAndWhen) {
  begin();
  EXPECT_TRUE(recorder->isFilming());
  const QRegularExpression name("/kitchen \\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d\\.mkv$");
  EXPECT_TRUE(name.match(recorder->path()).hasMatch()) << recorder->path().toStdString();
  const auto timeOf = [](int i) { return 1700000000123456 + 20000LL * i + 1000LL * i * i; };
  for (int i = 0; i < 40; ++i) recorder->add(flat(QColor(6 * i, 6 * i, 6 * i)), timeOf(i));
  recorder->end();
  EXPECT_FALSE(recorder->isFilming());
  EXPECT_EQ(errorOf(recorder->path()), "");

  const FilmRead film = readFilm(fileOf(recorder->path()));
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(QSize(film.width, film.height), kFilmSize);
  ASSERT_EQ(film.times.size(), 40u);
  for (int i = 0; i < 40; ++i)
    EXPECT_NEAR(film.times[i], static_cast<double>(timeOf(i) - timeOf(0)) / 1e6, 0.0011) << i;
  const std::string pixels = pixelsOfFilm(fileOf(recorder->path()));
  for (std::size_t i = 0; i < 40; ++i)
    EXPECT_NEAR(static_cast<unsigned char>(pixels.at(i * pixels.size() / 40)), 6 * i, 3) << i;
  EXPECT_EQ(recorder->duration(), (timeOf(39) - timeOf(0)) / 1000);
  EXPECT_EQ(recorder->bytes(), QFile(recorder->path()).size());
  EXPECT_EQ(recorder->dropped(), 0);
}

TEST_F(Filming, ShowsTheSameColorsInAPlayer) {
  begin();
  const QList<QColor> colors = {Qt::red, Qt::green, Qt::blue, "#c08060", "#202020", Qt::white};
  for (const QColor& color : colors) add(flat(color));
  recorder->end();
  EXPECT_EQ(errorOf(recorder->path()), "");
  const std::string pixels = pixelsOfFilm(fileOf(recorder->path()));
  const std::size_t one = std::size_t{3} * kFilmSize.width() * kFilmSize.height();
  ASSERT_EQ(pixels.size(), one * colors.size());
  for (int i = 0; i < colors.size(); ++i) {
    const auto* middle = reinterpret_cast<const unsigned char*>(&pixels[i * one + one / 2]);
    EXPECT_NEAR(middle[0], colors[i].red(), 4) << i;
    EXPECT_NEAR(middle[1], colors[i].green(), 4) << i;
    EXPECT_NEAR(middle[2], colors[i].blue(), 4) << i;
  }
}

TEST_F(Filming, TellsHowFarItIs) {
  begin();
  qint64 told = 0;
  QObject::connect(&*recorder, &FilmRecorder::progressed,
                   [&](qint64 duration) { told = duration; });
  ASSERT_TRUE(waitUntil([&] {
    add(flat(Qt::gray));
    return told > 1000;
  }));
  EXPECT_TRUE(recorder->isFilming());
  EXPECT_EQ(recorder->duration(), told);
  EXPECT_GT(recorder->bytes(), 0);
  EXPECT_LE(recorder->bytes(), QFile(recorder->path()).size());
}

TEST_F(Filming, LeavesTheProcessorToOthers) {
  begin();
  add(flat(Qt::gray));
  EXPECT_TRUE(waitUntil([] { return nicenessOf("film") >= 10; }));
}

TEST_F(Filming, NeverTakesANameThatIsTaken) {
  const QDateTime now = QDateTime::currentDateTime();
  for (int i = 0; i < 60; ++i) {
    QFile taken(
        folder.filePath("kitchen " + now.addSecs(i).toString("yyyy-MM-dd HH-mm-ss") + ".mkv"));
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    taken.write("mine");
  }
  begin();
  const QString path = recorder->path();
  EXPECT_TRUE(path.endsWith(" (2).mkv")) << path.toStdString();
  EXPECT_TRUE(QFile::exists(path)) << "nobody else may take it either";
  add(flat(Qt::gray));
  recorder->end();
  EXPECT_EQ(errorOf(path), "");
  for (const QFileInfo& file : QDir(folder.path()).entryInfoList(QDir::Files))
    if (file.filePath() != path) {
      EXPECT_EQ(bytesOf(file.filePath()), "mine");
    }
}

TEST_F(Filming, FinishesOneFilmWhileAnotherBegins) {
  begin();
  const QString first = recorder->path();
  for (int i = 0; i < 60; ++i) add(noise());
  recorder->end();
  begin();
  const QString second = recorder->path();
  EXPECT_NE(first, second);
  EXPECT_EQ(recorder->duration(), 0);
  for (int i = 0; i < 5; ++i) add(flat(Qt::gray));
  EXPECT_EQ(errorOf(first), "");
  EXPECT_TRUE(recorder->isFilming());
  EXPECT_LE(recorder->duration(), 133) << "not what the first one says last";
  recorder->end();
  EXPECT_EQ(errorOf(second), "");
  EXPECT_EQ(readFilm(fileOf(first)).times.size(), 60u);
  EXPECT_EQ(readFilm(fileOf(second)).times.size(), 5u);
  EXPECT_EQ(recorder->duration(), 133) << "the newest film's";
}

TEST_F(Filming, HurriesBeforeItDropsAnything) {
  const QSize large(1280, 720);
  begin(large);
  const QImage image = noise(large);
  for (int i = 0; i < 30; ++i) add(image);  // at once, in less room than there is
  recorder->end();
  EXPECT_EQ(errorOf(recorder->path()), "");
  EXPECT_EQ(recorder->dropped(), 0);
  const FilmRead film = readFilm(fileOf(recorder->path()));
  EXPECT_EQ(film.errors, "");
  EXPECT_EQ(film.times.size(), 30u);
  EXPECT_TRUE(bytesOf(recorder->path()).contains("crf=28.0")) << "as its encoder says of itself";
}

TEST_F(Filming, TakesItsTimeWhereItHasIt) {
  begin();
  for (int i = 0; i < 5; ++i) add(noise());
  recorder->end();
  EXPECT_EQ(errorOf(recorder->path()), "");
  EXPECT_TRUE(bytesOf(recorder->path()).contains("crf=22.0"));
  EXPECT_FALSE(bytesOf(recorder->path()).contains("crf=28.0"));
}

TEST_F(Filming, CutsAPictureOfAnotherSize) {
  begin();
  add(flat(Qt::white, {640, 480}));
  add(flat(Qt::white, {160, 240}));
  recorder->end();
  EXPECT_EQ(errorOf(recorder->path()), "");
  const std::string pixels = pixelsOfFilm(fileOf(recorder->path()));
  const std::size_t one = std::size_t{3} * kFilmSize.width() * kFilmSize.height();
  ASSERT_EQ(pixels.size(), 2 * one);
  const std::size_t row = one / 2;
  const std::size_t right = row + std::size_t{3} * 300;
  EXPECT_NEAR(static_cast<unsigned char>(pixels[right]), 255, 3);
  EXPECT_NEAR(static_cast<unsigned char>(pixels[one + row + 30]), 255, 3);
  EXPECT_NEAR(static_cast<unsigned char>(pixels[one + right]), 0, 3) << "black where nothing is";
}

TEST_F(Filming, HasEvenSizes) {
  EXPECT_EQ(FilmRecorder::evenSize({641, 480}), QSize(640, 480));
  EXPECT_EQ(FilmRecorder::evenSize({640, 481}), QSize(640, 480));
  EXPECT_EQ(FilmRecorder::evenSize({3, 0}), QSize(16, 16));
  begin({321, 241});
  add(flat(Qt::gray, {321, 241}));
  recorder->end();
  EXPECT_EQ(errorOf(recorder->path()), "");
  const FilmRead film = readFilm(fileOf(recorder->path()));
  EXPECT_EQ(QSize(film.width, film.height), QSize(320, 240));
}

TEST_F(Filming, EndsAFilmThatCanBePlayedWhenItGoes) {
  begin();
  ASSERT_TRUE(waitUntil([&] {
    add(flat(Qt::gray));
    return recorder->duration() > 100;
  }));
  const std::string path = fileOf(recorder->path());
  recorder.reset();
  const FilmRead film = readFilm(path);
  EXPECT_EQ(film.errors, "");
  EXPECT_GT(film.times.size(), 3u);
  EXPECT_GT(durationOf(path), 0.1) << "it was finished";
  EXPECT_TRUE(ends.empty());
}

TEST_F(Filming, LeavesAFilmThatCanBePlayedWhenItIsKilled) {
  Process program(FILM_ENDLESSLY, {fileOf(folder.path())});
  const auto line = program.waitForLine(".mkv");
  ASSERT_TRUE(line);
  const std::string path = line->substr(0, line->find('\n'));
  ASSERT_TRUE(waitUntil([&] { return readFilm(path).times.size() > 20; }));
  program.signal(SIGKILL);
  EXPECT_EQ(program.waitForExit(), -SIGKILL);
  EXPECT_GT(readFilm(path).times.size(), 20u);
}

}  // namespace

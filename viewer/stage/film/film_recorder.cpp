// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/film/film_recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "viewer/stage/film/film_problem.h"
#include "viewer/stage/keep_folder.h"
#include "zu/log.h"

namespace {

constexpr int kLeast = 16;  // pixels; no encoder takes a point
constexpr int kTries = 100;

// Makes the file, empty: nobody else takes its name meanwhile. Returns errno.
int reserve(const QString& path) {
  const int fd = open(QFile::encodeName(path), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return errno;
  close(fd);
  return 0;
}

void log(const QString& path, const FilmEnd& end) {
  if (!end.reason.isEmpty()) zu::log::error("periscope", "film") << end.reason.toStdString();
  if (end.dropped > 0)
    zu::log::warning("periscope", "film")
        << end.dropped << " pictures are missing in '" << path.toStdString()
        << "': this computer could not encode as quickly as they came";
}

}  // namespace

FilmRecorder::FilmRecorder(QObject* parent) : QObject(parent) {
}

FilmRecorder::~FilmRecorder() {
  end();
  for (auto& thread : fFinishing) thread->closeSoon();
  for (auto& thread : fFinishing) FilmThread::letGo(std::move(thread));
}

QSize FilmRecorder::evenSize(QSize size) {
  return QSize(size.width() & ~1, size.height() & ~1).expandedTo({kLeast, kLeast});
}

QString FilmRecorder::begin(const QString& folder, const QString& robot, QSize size, int fps) {
  if (isFilming()) return {};
  QString path;
  int number = EEXIST;
  for (int i = 0; i < kTries && number == EEXIST; ++i) {
    path = freeFileName(folder, keptName(robot), ".mkv");
    number = reserve(path);
  }
  if (number != 0) return filmProblem(number, path);
  start(std::make_unique<FilmThread>(path, evenSize(size), std::max(1, fps)));
  return {};
}

void FilmRecorder::start(std::unique_ptr<FilmThread> thread) {
  fThread = std::move(thread);
  fNewest = fThread.get();
  fPath = fThread->path();
  fDuration = fBytes = fDropped = 0;
  connect(fThread.get(), &FilmThread::progressed, this,
          [this, film = fNewest](qint64 duration, qint64 bytes, int dropped) {
            if (film == fNewest) note(duration, bytes, dropped);
          });
  connect(fThread.get(), &FilmThread::ended, this,
          [this, film = fNewest](const FilmEnd& end) { finish(film, end); });
  fThread->start();
}

void FilmRecorder::add(const QImage& image, std::int64_t microseconds) {
  if (fThread) fThread->add(image, microseconds);
}

void FilmRecorder::end() {
  if (!fThread) return;
  fThread->close();
  fFinishing.push_back(std::move(fThread));
}

void FilmRecorder::note(qint64 duration, qint64 bytes, int dropped) {
  fDuration = duration;
  fBytes = bytes;
  fDropped = dropped;
  emit progressed(duration, bytes, dropped);
}

void FilmRecorder::finish(const FilmThread* film, const FilmEnd& filmEnd) {
  if (film == fThread.get()) end();
  const QString path = film->path();
  std::erase_if(fFinishing, [film](const auto& each) { return each.get() == film; });
  log(path, filmEnd);
  emit ended(path, problemOf(path, filmEnd));
}

// Empty when there is none.
QString FilmRecorder::problemOf(const QString& path, const FilmEnd& end) {
  switch (end.problem) {
    case FilmEnd::None:
      return {};
    case FilmEnd::Empty:
      return tr("There is no film \"%1\": no picture was shown while it was filmed. Play the "
                "camera, "
                "and film again.")
          .arg(QFileInfo(path).fileName());
    case FilmEnd::NotWritten:
      return filmProblem(end.number, path);
    case FilmEnd::NotEncoded:
      return tr("The film \"%1\" can't go on: %2. Film again, smaller perhaps.")
          .arg(QFileInfo(path).fileName(), end.reason);
  }
  return {};
}

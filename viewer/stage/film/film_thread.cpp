// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/film/film_thread.h"

#include <sys/resource.h>

#include <QFile>
#include <utility>

#include "viewer/stage/film/film_writer.h"

namespace {

using Clock = FilmQueue::Clock;

constexpr int kBackground = 10;  // nice value
constexpr std::chrono::milliseconds kBetweenNews{250};
constexpr std::chrono::milliseconds kLastWork{1000};
constexpr std::chrono::milliseconds kLastWait{3000};

}  // namespace

FilmThread::FilmThread(QString path, QSize size, int fps)
    : fPath(std::move(path)), fSize(size), fFps(fps) {
  setObjectName("film");
}

FilmThread::~FilmThread() {
  wait();
}

void FilmThread::add(const QImage& image, std::int64_t microseconds) {
  fQueue.add({image, microseconds});
}

void FilmThread::closeSoon() {
  fQueue.close(Clock::now() + kLastWork);
}

void FilmThread::letGo(std::unique_ptr<FilmThread> thread) {
  thread->disconnect();
  if (thread->wait(QDeadlineTimer(kLastWait))) return;
  FilmThread* left = thread.release();
  connect(left, &QThread::finished, left, &QObject::deleteLater);
  if (left->isFinished()) left->deleteLater();
}

void FilmThread::run() {
  setpriority(PRIO_PROCESS, 0, kBackground);  // on Linux of this thread alone
  emit ended(make());
}

FilmEnd FilmThread::make() {
  FilmEnd end;
  FilmWriter writer(QFile::encodeName(fPath).toStdString(), fSize, fFps);
  try {
    writeAll(writer);
  } catch (const film::WriteError& error) {
    end = {FilmEnd::NotWritten, error.number(), QString::fromUtf8(error.what())};
  } catch (const std::exception& error) {
    end = {FilmEnd::NotEncoded, 0, QString::fromUtf8(error.what())};
  }
  fQueue.close(Clock::now());
  if (writer.pictures() == 0) {
    QFile::remove(fPath);
    if (end.problem == FilmEnd::None) end.problem = FilmEnd::Empty;
  }
  end.dropped = fQueue.dropped();
  tell(writer);
  return end;
}

void FilmThread::writeAll(FilmWriter& writer) {
  auto news = Clock::now();
  while (const auto picture = fQueue.take()) {
    writer.add(*picture, fQueue.isFilling());
    if (Clock::now() < news) continue;
    news = Clock::now() + kBetweenNews;
    tell(writer);
  }
  writer.finish();
}

void FilmThread::tell(const FilmWriter& writer) {
  emit progressed(writer.duration(), writer.bytes(), fQueue.dropped());
}

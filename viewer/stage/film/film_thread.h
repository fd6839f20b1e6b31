// SPDX-License-Identifier: Apache-2.0
// Where a film is encoded and written.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <QThread>
#include <chrono>
#include <cstdint>
#include <memory>

#include "viewer/stage/film/film_queue.h"

class FilmWriter;

// How a film ended.
struct FilmEnd {
  enum Problem { None, NotWritten, NotEncoded, Empty } problem = None;
  int number = 0;   // of what is NotWritten: errno
  QString reason;   // in English; of Empty none
  int dropped = 0;  // pictures that are missing
};

// Makes one film, on a thread of low priority. Runs from start() to close() or until the film can't
// go on. GUI thread, which never waits for it but in letGo().
class FilmThread : public QThread {
  Q_OBJECT

 public:
  // As many bytes of pictures may wait.
  static constexpr std::size_t kMostBytes = 128U << 20U;

  // `size`: of the pictures, even.
  FilmThread(QString path, QSize size, int fps);
  ~FilmThread() override;

  const QString& path() const { return fPath; }

  // Never waits; see FilmQueue.
  void add(const QImage& image, std::int64_t microseconds);
  // What waits is still put into the film.
  void close() { fQueue.close(); }
  // No more than can be encoded in a second.
  void closeSoon();
  // Waits for the end of one that is closed, but not for a disk that stands still: it is left to
  // itself then, and goes when that goes on.
  static void letGo(std::unique_ptr<FilmThread> thread);

 signals:
  // Now and then, and before the end. Duration in ms; dropped: pictures that are missing.
  void progressed(qint64 duration, qint64 bytes, int dropped);
  // The file is closed: what was written is a film; without a picture there is no file.
  void ended(const FilmEnd& end);

 protected:
  void run() override;

 private:
  FilmEnd make();
  void writeAll(FilmWriter& writer);
  void tell(const FilmWriter& writer);

  const QString fPath;
  const QSize fSize;
  const int fFps;
  FilmQueue fQueue{kMostBytes};
};

// SPDX-License-Identifier: Apache-2.0
// Films what the stage shows, on this computer.
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

#include "viewer/stage/film/film_thread.h"

// begin(), then a picture whenever another one is shown, then end(); and again. Nothing of it waits
// for the processor or the disk. GUI thread.
//
// The destructor ends a film that runs, with what can be encoded in a second.
class FilmRecorder : public QObject {
  Q_OBJECT

 public:
  explicit FilmRecorder(QObject* parent = nullptr);
  ~FilmRecorder() override;

  // What a film's pictures must be like: the nearest even size that is no larger.
  static QSize evenSize(QSize size);

  // Begins a film in a new file, such as "kitchen 2026-11-22 15-04-05.mkv". `size`: of the pictures
  // that come, even; `fps`: about how many come in a second. Returns what is wrong and what to do,
  // empty where nothing is. While it films it does nothing.
  [[nodiscard]] QString begin(const QString& folder, const QString& robot, QSize size, int fps);
  // Format_RGB32, of the film's size; the image may be changed afterwards. `microseconds`: when it
  // was shown, by any clock. Does nothing while there is no film.
  void add(const QImage& image, std::int64_t microseconds);
  // The film is finished in the background.
  void end();

  bool isFilming() const { return fThread != nullptr; }
  // Of the film that runs, or else of the one begun last.
  const QString& path() const { return fPath; }
  qint64 duration() const { return fDuration; }  // ms
  qint64 bytes() const { return fBytes; }
  int dropped() const { return fDropped; }  // pictures that are missing

 signals:
  // Now and then, of the film begun last.
  void progressed(qint64 duration, qint64 bytes, int dropped);
  // Of every film, once its file is finished. `error`: why it ended by itself, and what to do; what
  // was written until then can be played. Where there was no picture there is no file either.
  void ended(const QString& path, const QString& error);

 private:
  void start(std::unique_ptr<FilmThread> thread);
  void note(qint64 duration, qint64 bytes, int dropped);
  void finish(const FilmThread* film, const FilmEnd& filmEnd);
  static QString problemOf(const QString& path, const FilmEnd& end);

  std::unique_ptr<FilmThread> fThread;                  // while it films
  std::vector<std::unique_ptr<FilmThread>> fFinishing;  // films that end in the background
  const FilmThread* fNewest = nullptr;                  // only compared
  QString fPath;
  qint64 fDuration = 0;
  qint64 fBytes = 0;
  int fDropped = 0;
};

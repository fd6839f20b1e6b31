// SPDX-License-Identifier: Apache-2.0
// Keeps what is seen on a stage: as pictures, on the clipboard, as films.
#pragma once

#include <QObject>
#include <QString>

#include "viewer/stage/film/film_recorder.h"

class StageScene;

// Files go into the folder that is remembered (see keep_folder.h), without a question. GUI thread.
class StageKeeper : public QObject {
  Q_OBJECT

 public:
  // `robot`: after whom the files are called. The scene outlives the keeper.
  StageKeeper(StageScene& scene, QString robot, QObject* parent);

  void save(bool withOverlays);
  void copy();
  void askForFolder(QWidget* parent);

  // Films the view in the size that it has now; what is seen later in another size is fitted in.
  // False when that can't be: said() tells why.
  bool beginFilm(double framesPerSecond);
  void endFilm();
  bool isFilming() const { return fFilm.isFilming(); }
  int missing() const { return fFilm.dropped(); }  // pictures, in the film
  // "Filming 1:05, 3.4 MB", and what is missing; empty while there is no film.
  QString filmText() const;
  // The scene shows another picture.
  void addToFilm();

 signals:
  // What came of it.
  void said(const QString& text, bool isGood);
  // A film began, ended or grew.
  void filmChanged();

 private:
  void finishFilm(const QString& path, const QString& error);

  StageScene& fScene;
  const QString fRobot;
  FilmRecorder fFilm;
  QSize fFilmSize;
};

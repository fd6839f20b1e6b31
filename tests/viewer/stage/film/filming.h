// SPDX-License-Identifier: Apache-2.0
// A recorder, and all that it tells.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <map>
#include <optional>

#include "../../../film/read_film.h"
#include "support/wait.h"
#include "viewer/stage/film/film_recorder.h"

inline constexpr QSize kFilmSize{320, 240};
inline constexpr std::int64_t kFilmPeriod = 33333;

// Of one colour.
inline QImage flat(QColor color, QSize size = kFilmSize) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

// The worst there is for an encoder.
inline QImage noise(QSize size = kFilmSize) {
  QImage image(size, QImage::Format_RGB32);
  for (int y = 0; y < size.height(); ++y)
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(image.scanLine(y)),
                                          size.width());
  return image;
}

class Filming : public testing::Test {
 protected:
  Filming() { listen(); }

  void listen() {
    QObject::connect(&*recorder, &FilmRecorder::ended,
                     [this](const QString& path, const QString& error) { ends[path] = error; });
  }
  void begin(QSize size = kFilmSize) {
    EXPECT_EQ(recorder->begin(folder.path(), "kitchen", size, 30), "");
  }
  void add(const QImage& image) { recorder->add(image, kFilmPeriod * number++); }
  // These, over and over, until the film has ended by itself.
  void addUntilTheEnd(const QList<QImage>& images) {
    EXPECT_TRUE(waitUntil([&] {
      add(images[number % images.size()]);
      return !ends.empty();
    }));
  }
  // The error that it ended with.
  QString errorOf(const QString& path) {
    EXPECT_TRUE(waitUntil([&] { return ends.contains(path); })) << path.toStdString();
    return ends[path];
  }
  static std::string fileOf(const QString& path) { return QFile::encodeName(path).toStdString(); }

  QTemporaryDir folder;
  std::optional<FilmRecorder> recorder{std::in_place};
  std::map<QString, QString> ends;  // errors of the films that have ended
  std::int64_t number = 0;          // of the next picture
};

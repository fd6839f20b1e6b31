// SPDX-License-Identifier: Apache-2.0
// film-endlessly FOLDER: films until somebody ends it; its first line is the path of the film.
#include <QCoreApplication>
#include <QImage>
#include <QTimer>
#include <cstdio>

#include "viewer/stage/film/film_recorder.h"

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc != 2) return 2;
  FilmRecorder recorder;
  const QString problem = recorder.begin(QString::fromLocal8Bit(argv[1]), "robot", {320, 240}, 30);
  std::printf("%s\n", qPrintable(problem.isEmpty() ? recorder.path() : problem));
  std::fflush(stdout);
  int number = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    QImage image(320, 240, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(number % 360, 255, 200));
    recorder.add(image, 33333LL * number++);
  });
  timer.start(5);
  return QCoreApplication::exec();
}

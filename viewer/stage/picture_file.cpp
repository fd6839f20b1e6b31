// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/picture_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageWriter>
#include <QSaveFile>
#include <utility>

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(PictureFile)
};

QString problemOf(const QString& path, const QString& why) {
  return Words::tr("%1 can't be written: %2. Choose another folder, or make room there.")
      .arg(path, why);
}

// Empty when it is written.
QString writePng(const QImage& picture, const QString& path) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return problemOf(path, file.errorString());
  QImageWriter writer(&file, "png");
  const bool isWritten = writer.write(picture);
  const QString why =
      file.error() != QFileDevice::NoError ? file.errorString() : writer.errorString();
  if (isWritten && file.commit()) return {};
  return problemOf(path, isWritten ? file.errorString() : why);
}

}  // namespace

PictureWriter::PictureWriter(QImage picture, QString path, QString problem)
    : QThread(QCoreApplication::instance()),
      fPicture(std::move(picture)),
      fPath(std::move(path)),
      fProblem(std::move(problem)) {
  connect(this, &QThread::finished, this, &PictureWriter::finish);
}

PictureWriter::~PictureWriter() {
  wait();
  fHasRun.load();  // as in finish()
}

PictureWriter* PictureWriter::write(const QImage& picture, const QString& path) {
  QFile name(path);
  const bool isFree = name.open(QIODevice::WriteOnly | QIODevice::NewOnly);
  const QString problem = isFree ? QString() : problemOf(path, name.errorString());
  auto* writer = new PictureWriter(picture, path, problem);
  writer->start();
  return writer;
}

void PictureWriter::run() {
  if (fProblem.isEmpty()) {
    fProblem = writePng(fPicture, fPath);
    if (!fProblem.isEmpty()) QFile::remove(fPath);
  }
  fHasRun = true;
}

// What the thread has left is read here. wait() sees to that; this read and the write at the end of
// run() tell it to thread checkers, which can't look into Qt.
void PictureWriter::finish() {
  wait();
  fHasRun.load();
  emit ended(fProblem);
  deleteLater();
}

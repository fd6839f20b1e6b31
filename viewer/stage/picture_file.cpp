// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/picture_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageWriter>
#include <QPromise>
#include <QSaveFile>
#include <QThreadPool>
#include <memory>

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(PictureFile)
};

QString problemOf(const QString& path, const QString& why) {
  return Words::tr("%1 can't be written: %2. Choose another folder, or make room there.")
      .arg(path, why);
}

// Empty when it is written.
QString write(const QImage& picture, const QString& path) {
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

QFuture<QString> savePicture(const QImage& picture, const QString& path) {
  const auto promise = std::make_shared<QPromise<QString>>();
  const QFuture<QString> result = promise->future();
  promise->start();
  QFile name(path);
  if (!name.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
    promise->addResult(problemOf(path, name.errorString()));
    promise->finish();
    return result;
  }
  QThreadPool::globalInstance()->start([promise, picture, path] {
    const QString problem = write(picture, path);
    if (!problem.isEmpty()) QFile::remove(path);
    promise->addResult(problem);
    promise->finish();
  });
  return result;
}

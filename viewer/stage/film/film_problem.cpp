// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/film/film_problem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(FilmRecorder)
};

}  // namespace

QString filmProblem(int number, const QString& path) {
  const QFileInfo file(path);
  const QString name = file.fileName();
  const QString folder = QDir::toNativeSeparators(file.path());
  switch (number) {
    case ENOSPC:
    case EDQUOT:
      return Words::tr(
                 "There is no more room in the folder %1 for the film \"%2\". Make room there "
                 "or choose another folder, and film again.")
          .arg(folder, name);
    case EFBIG:
      return Words::tr(
                 "The film \"%2\" can't grow any larger in the folder %1. Film again for the "
                 "rest, or choose another folder.")
          .arg(folder, name);
    case EACCES:
    case EPERM:
    case EROFS:
      return Words::tr("The folder %1 can't be written to. Choose another folder, and film again.")
          .arg(folder);
    case ENOENT:
    case ENOTDIR:
    case ESTALE:
      if (!file.dir().exists())
        return Words::tr("The folder %1 isn't there. Choose another folder, and film again.")
            .arg(folder);
      return Words::tr(
                 "The film \"%2\" is no longer in the folder %1: it was moved or deleted. "
                 "Film again, and leave it there until its end.")
          .arg(folder, name);
    default:
      return Words::tr(
                 "The film \"%2\" can't be written to the folder %1: %3. Choose another "
                 "folder, and film again.")
          .arg(folder, name, QString::fromLocal8Bit(std::strerror(number)));
  }
}

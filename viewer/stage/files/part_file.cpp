// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/part_file.h"

#include "viewer/stage/keep_folder.h"

namespace {

constexpr int kTries = 10;  // of names that others take meanwhile

}  // namespace

PartFile::PartFile(const QString& folder, const QString& name) : fFolder(folder), fName(name) {
  for (int i = 0; i < kTries; ++i) {
    fFile.setFileName(freeFileName(folder, '.' + name, ".part"));
    // Unbuffered, so that a full disk fails the transfer and not the closing.
    if (fFile.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) return;
  }
  fError = fFile.errorString();
}

PartFile::~PartFile() {
  if (isOpen()) fFile.remove();
}

QString PartFile::keep(const QDateTime& time) {
  if (time.isValid()) fFile.setFileTime(time, QFileDevice::FileModificationTime);
  const qsizetype dot = fName.lastIndexOf('.');
  const qsizetype end = dot > 0 ? dot : fName.size();
  for (int i = 0; i < kTries; ++i) {
    const QString path = freeFileName(fFolder, fName.left(end), fName.mid(end));
    if (fFile.rename(path)) return path;  // overwrites nothing
  }
  fError = fFile.errorString();
  fFile.remove();
  return {};
}

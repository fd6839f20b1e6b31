// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/cache_folder.h"

#include <QDir>
#include <QDirIterator>
#include <QStandardPaths>
#include <algorithm>
#include <vector>

CacheFolder::CacheFolder(const QString& name, qint64 mostBytes)
    : fPath(QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + '/' + name),
      fMostBytes(mostBytes) {
}

QString CacheFolder::path(const QString& file) const {
  const QString path = fPath + '/' + file;
  QDir().mkpath(QFileInfo(path).path());
  return path;
}

void CacheFolder::trim() const {
  std::vector<QFileInfo> files;
  qint64 bytes = 0;
  for (QDirIterator file(fPath, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
       file.hasNext();) {
    files.push_back(file.nextFileInfo());
    bytes += files.back().size();
  }
  const auto changed = [](const QFileInfo& file) {
    return file.fileTime(QFileDevice::FileMetadataChangeTime);
  };
  std::sort(files.begin(), files.end(),
            [&](const QFileInfo& a, const QFileInfo& b) { return changed(a) < changed(b); });
  for (std::size_t i = 0; i + 1 < files.size() && bytes > fMostBytes; ++i) {
    bytes -= files[i].size();
    QFile::remove(files[i].filePath());
    if (files[i].path() != fPath) QDir().rmdir(files[i].path());
  }
}

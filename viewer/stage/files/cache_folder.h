// SPDX-License-Identifier: Apache-2.0
// A folder of files that can be had again.
#pragma once

#include <QString>

// Thread-bound; several may stand for one folder.
class CacheFolder {
 public:
  // `name`: below the user's cache folder of this program. `mostBytes`: what it may have in it.
  CacheFolder(const QString& name, qint64 mostBytes);

  // Makes the folder where it is missing. What is in the path has no meaning.
  QString path(const QString& file) const;
  // Takes the oldest files away while there is too much, but never the newest.
  void trim() const;

 private:
  QString fPath;
  qint64 fMostBytes;
};

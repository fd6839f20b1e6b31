// SPDX-License-Identifier: Apache-2.0
// A file that is still coming.
#pragma once

#include <QDateTime>
#include <QFile>

// Has a name of its own, hidden, until it is complete; goes away unless it is kept. Thread-bound.
class PartFile {
 public:
  // Made in `folder`, an empty file; see isOpen().
  PartFile(const QString& folder, const QString& name);
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  bool isOpen() const { return fFile.isOpen(); }
  QIODevice* device() { return &fFile; }
  // Why it could not be made or kept, for people.
  QString error() const { return fError; }

  // It is complete: gets its name, or where there is such a file already "NAME (2)" and so on, and
  // the time of the original. Returns its path, which is empty when it can't be kept.
  QString keep(const QDateTime& time);

 private:
  QString fFolder;
  QString fName;
  QString fError;
  QFile fFile;
};

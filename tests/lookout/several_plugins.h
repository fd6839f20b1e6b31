// SPDX-License-Identifier: Apache-2.0
// A folder with several plug-ins for robots, and one that needs none.
#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <stdexcept>

// Removes the folder at its end.
class SeveralPlugins {
 public:
  // Each is a copy of the fixture, which makes it a library and an object of its own.
  explicit SeveralPlugins(const QStringList& names,
                          const QString& fixture = FIXTURES "/good/working_plugin.so") {
    for (const QString& name : names) copy(fixture, "lib" + name + ".so");
    copy(FIXTURES "/good/robotless_plugin.so", "robotless_plugin.so");
  }

  QString path() const { return fFolder.path(); }

 private:
  void copy(const QString& from, const QString& name) {
    if (!QFile::copy(from, fFolder.filePath(name)))
      throw std::runtime_error("cannot copy " + from.toStdString());
  }

  QTemporaryDir fFolder;
};

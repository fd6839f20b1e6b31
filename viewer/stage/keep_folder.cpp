// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/keep_folder.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>

namespace {

constexpr const char* kKey = "Stage/folder";
constexpr int kMostBytes = 150;  // file systems take names of 255

// Sticks and shares of other systems refuse these, too.
bool isSafe(QChar letter) {
  return letter.isPrint() && !QStringLiteral("/\\:*?\"<>|").contains(letter);
}

bool isThere(const QString& path) {
  const QFileInfo file(path);
  return file.exists() || file.isSymLink();
}

// By whole letters.
void shorten(QString& name) {
  while (name.toUtf8().size() > kMostBytes) {
    const bool isPair = name.back().isLowSurrogate();
    name.chop(isPair ? 2 : 1);
  }
}

// Points in front hide a file; at the end other systems leave them out.
QString withoutEdges(QString name) {
  const auto isEdge = [](QChar letter) { return letter == u'.' || letter.isSpace(); };
  while (!name.isEmpty() && isEdge(name.front())) name.remove(0, 1);
  while (!name.isEmpty() && isEdge(name.back())) name.chop(1);
  return name;
}

}  // namespace

QString keepFolder() {
  const QString chosen = QSettings().value(kKey).toString();
  if (!chosen.isEmpty()) return chosen;
  const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  const QString folder = QDir(pictures).filePath("Lookout");
  QDir().mkpath(folder);
  return folder;
}

void setKeepFolder(const QString& folder) {
  QSettings().setValue(kKey, folder);
}

QString safeName(const QString& name) {
  QString safe = name;
  for (QChar& letter : safe)
    if (!isSafe(letter) && !letter.isSurrogate()) letter = u'-';
  shorten(safe);
  safe = withoutEdges(safe);
  return safe.isEmpty() ? QStringLiteral("robot") : safe;
}

QString keptName(const QString& robot) {
  return safeName(robot) + QDateTime::currentDateTime().toString(" yyyy-MM-dd HH-mm-ss");
}

QString freeFileName(const QString& folder, const QString& base, const QString& ending) {
  const QDir where(folder);
  QString path = where.filePath(base + ending);
  for (int number = 2; isThere(path); ++number)
    path = where.filePath(base + QStringLiteral(" (%1)").arg(number) + ending);
  return path;
}

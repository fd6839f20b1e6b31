// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/recording_file.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <algorithm>
#include <tuple>

#include "viewer/core/module.h"

const QString kRecordingsOnRobot = QString::fromStdString(kRecordPath);
// Its root is the home.
const QString kRecordingsOnServer = kRecordingsOnRobot.mid(QString("/home/tam/").size());

RecordingKind kindOf(const QString& fileName) {
  const QString suffix = QFileInfo(fileName).suffix().toLower();
  if (suffix == "jpg" || suffix == "jpeg") return RecordingKind::Photo;
  return suffix == "avi" ? RecordingKind::Film : RecordingKind::Other;
}

QString RecordingFile::key(const QString& robot) const {
  const QString text =
      QString("%1/%2/%3/%4")
          .arg(robot, QString::number(size),
               QString::number(time.isValid() ? time.toSecsSinceEpoch() : 0), name);
  return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex();
}

std::vector<RecordingFile> recordingsIn(const std::vector<FtpEntry>& entries) {
  std::vector<RecordingFile> files;
  for (const FtpEntry& entry : entries)
    if (!entry.isFolder && !entry.name.startsWith('.'))
      files.push_back({entry.name, entry.size, entry.time});
  std::sort(files.begin(), files.end(), [](const RecordingFile& a, const RecordingFile& b) {
    return std::tie(b.time, a.name) < std::tie(a.time, b.name);
  });
  return files;
}

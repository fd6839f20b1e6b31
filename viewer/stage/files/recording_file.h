// SPDX-License-Identifier: Apache-2.0
// A photo or a film on a robot.
#pragma once

#include <QString>
#include <vector>

#include "viewer/download/ftp_listing.h"

// Where a robot keeps them, as its FTP server and its programs know it; both end with a slash.
extern const QString kRecordingsOnServer;
extern const QString kRecordingsOnRobot;

enum class RecordingKind { Photo, Film, Other };

RecordingKind kindOf(const QString& fileName);

// Immutable, thread-safe.
struct RecordingFile {
  QString name;
  qint64 size = -1;  // bytes; -1: not known
  QDateTime time;    // in UTC; invalid: not known

  RecordingKind kind() const { return kindOf(name); }
  // Differs from that of every other recording of this and of other robots, also of one that once
  // had the same name. Good as the name of a file.
  QString key(const QString& robot) const;

  bool operator==(const RecordingFile&) const = default;
};

// The files of a folder, newest first; hidden ones are nobody's recordings.
std::vector<RecordingFile> recordingsIn(const std::vector<FtpEntry>& entries);

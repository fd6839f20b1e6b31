// SPDX-License-Identifier: Apache-2.0
// What is in a folder of an FTP server.
#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

// Immutable.
struct FtpEntry {
  QString name;      // neither empty, "." nor "..", without slashes and control characters
  qint64 size = -1;  // bytes; -1 where the server doesn't say
  QDateTime time;    // of the last change, in UTC; invalid where the server doesn't say
  bool isFolder = false;
};

struct FtpListing {
  std::vector<FtpEntry> entries;  // files and folders, in the server's order; links are left out
  QString error;                  // why there are none, for people; empty when nothing is wrong
};

// The answer to MLSD (RFC 3659), of which nothing is believed: one entry that can't be is an error
// for all, as are more than 20,000 of them. Thread-safe.
FtpListing parseFtpListing(const QByteArray& text);

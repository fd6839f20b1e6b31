// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_listing.h"

#include <QCoreApplication>
#include <QTimeZone>
#include <algorithm>
#include <optional>

namespace {

constexpr std::size_t kMostEntries = 20000;
constexpr qsizetype kLongestName = 1024;
constexpr qsizetype kShown = 60;  // characters of what is wrong

struct Words {
  Q_DECLARE_TR_FUNCTIONS(FtpListing)
};

bool isControl(QChar c) {
  return c.category() == QChar::Other_Control;
}

// As much of it as fits into a message.
QString shown(const QByteArray& text) {
  QString line = QString::fromUtf8(text.left(4 * kShown)).left(kShown);
  std::replace_if(line.begin(), line.end(), isControl, QChar('?'));
  return line;
}

bool isPossible(const QString& name) {
  return !name.isEmpty() && name.size() <= kLongestName && name != "." && name != ".." &&
         !name.contains('/') && std::none_of(name.begin(), name.end(), isControl);
}

// "20261122042505", perhaps with a fraction of the second.
QDateTime timeOf(const QByteArray& text) {
  QDateTime time = QDateTime::fromString(QString::fromLatin1(text.left(14)), "yyyyMMddHHmmss");
  time.setTimeZone(QTimeZone::utc());
  return time;
}

struct Facts {
  QByteArray type;
  FtpEntry entry;
};

// "type=file;size=3;modify=20261122042505;". Nothing when it is something else.
std::optional<Facts> factsOf(const QByteArray& text) {
  Facts facts;
  for (const QByteArray& fact : text.split(';')) {
    const qsizetype equals = fact.indexOf('=');
    if (equals < 0) continue;
    const QByteArray name = fact.left(equals).toLower();
    const QByteArray value = fact.mid(equals + 1);
    bool isGood = true;
    if (name == "type") facts.type = value.toLower();
    if (name == "size") facts.entry.size = value.toLongLong(&isGood);
    if (name == "modify") facts.entry.time = timeOf(value);
    if (!isGood || facts.entry.size < -1) return std::nullopt;
  }
  facts.entry.isFolder = facts.type == "dir";
  if (facts.type.isEmpty()) return std::nullopt;
  return facts;
}

// What is wrong with the line; empty when nothing is.
QString addLine(const QByteArray& line, std::vector<FtpEntry>& entries) {
  const qsizetype blank = line.indexOf(' ');
  auto facts = blank < 0 ? std::nullopt : factsOf(line.left(blank));
  if (!facts)
    return Words::tr("The server's list of files can't be understood: \"%1\".").arg(shown(line));
  if (facts->type != "file" && facts->type != "dir") return {};  // the folder itself, a link, ..
  const QByteArray name = line.mid(blank + 1);
  facts->entry.name = QString::fromUtf8(name);
  if (!isPossible(facts->entry.name))
    return Words::tr("The server lists a file that can't be: \"%1\".").arg(shown(name));
  entries.push_back(std::move(facts->entry));
  return {};
}

}  // namespace

FtpListing parseFtpListing(const QByteArray& text) {
  FtpListing listing;
  qsizetype end = 0;
  for (qsizetype begin = 0; begin < text.size() && listing.error.isEmpty(); begin = end + 1) {
    end = text.indexOf('\n', begin);
    if (end < 0) end = text.size();
    QByteArray line = text.mid(begin, end - begin);
    if (line.endsWith('\r')) line.chop(1);
    if (!line.isEmpty()) listing.error = addLine(line, listing.entries);
    if (listing.entries.size() > kMostEntries)
      listing.error = Words::tr("There are too many files in the folder to list them.");
  }
  if (!listing.error.isEmpty()) listing.entries.clear();
  return listing;
}

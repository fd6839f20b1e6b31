// SPDX-License-Identifier: Apache-2.0
#include "log/log_model.h"

#include <QColor>
#include <QDateTime>
#include <QGuiApplication>
#include <QPalette>

namespace Lookout {
namespace {

QString timeText(std::chrono::system_clock::time_point time) {
  const auto sinceEpoch = time.time_since_epoch();
  return QDateTime::fromMSecsSinceEpoch(
             std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count())
      .toString("HH:mm:ss.zzz");
}

// Red and orange that can be read on the palette's background, be it light or dark.
QVariant colour(zu::log::Level level) {
  const bool dark = QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
  if (level <= zu::log::Level::error) return QColor(dark ? "#ff8a80" : "#b00020");
  if (level == zu::log::Level::warning) return QColor(dark ? "#ffcc80" : "#9a4b00");
  return {};
}

}  // namespace

LogModel::LogModel(int capacity, QObject* parent)
    : QAbstractTableModel(parent), fCapacity(capacity) {
}

void LogModel::append(const std::vector<zu::log::Record>& records) {
  for (const auto& record : records) add(record);
}

void LogModel::add(const zu::log::Record& record) {
  if (const int row = rowRepeatedBy(record); row >= 0) {
    Line& line = fLines[static_cast<std::size_t>(row)];
    line.record = record;
    ++line.count;
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    return;
  }
  if (rowCount() >= fCapacity) {
    beginRemoveRows({}, 0, 0);
    fLines.pop_front();
    endRemoveRows();
  }
  beginInsertRows({}, rowCount(), rowCount());
  fLines.push_back({record, 1});
  endInsertRows();
}

// -1 when it is news.
int LogModel::rowRepeatedBy(const zu::log::Record& record) const {
  const int last = rowCount() - 1;
  if (isAt(last, record)) return last;
  const bool isOfPair = last >= 3 && isAt(last - 1, record) && isAt(last - 3, record) &&
                        isAt(last - 2, fLines.back().record);
  return isOfPair ? last - 1 : -1;
}

bool LogModel::isAt(int row, const zu::log::Record& record) const {
  if (row < 0) return false;
  const zu::log::Record& there = fLines[static_cast<std::size_t>(row)].record;
  return there.level == record.level && there.category == record.category &&
         there.function == record.function && there.text == record.text &&
         there.subject == record.subject;
}

void LogModel::clear() {
  beginResetModel();
  fLines.clear();
  endResetModel();
}

QString LogModel::line(int row) const {
  const Line& line = fLines.at(static_cast<std::size_t>(row));
  return text(line, Time) + " " + text(line, Severity) + " " + text(line, Origin) + ": " +
         text(line, Text);
}

QString LogModel::text(const Line& line, int column) const {
  const zu::log::Record& record = line.record;
  switch (column) {
    case Time:
      return timeText(record.time);
    case Severity:
      return QString::fromLatin1(zu::log::name(record.level));
    case Origin:
      return QString::fromStdString(
          record.category + "." + record.function +
          (record.subject.empty() ? std::string() : " (" + record.subject + ")"));
    case Text:
      return QString::fromStdString(record.text) +
             (line.count > 1 ? QString(" (x %1)").arg(line.count) : QString());
  }
  return {};
}

int LogModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(fLines.size());
}

int LogModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Line& line = fLines.at(static_cast<std::size_t>(index.row()));
  switch (role) {
    case Qt::DisplayRole:
      return text(line, index.column()).replace('\n', ' ');
    case Qt::ToolTipRole:
      return text(line, index.column());
    case Qt::ForegroundRole:
      return colour(line.record.level);
    case LevelRole:
      return static_cast<int>(line.record.level);
  }
  return {};
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case Time:
      return tr("Time");
    case Severity:
      return tr("Level");
    case Origin:
      return tr("Where");
    case Text:
      return tr("Text");
  }
  return {};
}

}  // namespace Lookout

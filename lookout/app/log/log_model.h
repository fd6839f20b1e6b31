// SPDX-License-Identifier: Apache-2.0
// The lines of the log panel.
#pragma once

#include <QAbstractTableModel>
#include <deque>
#include <vector>

#include "zu/log.h"

namespace Lookout {

// Keeps the newest lines, at most `capacity`. A line that repeats the one before is counted there
// instead of added: "text (x 12)"; and so is each of a pair that stands there twice in a row and
// goes on. GUI thread.
class LogModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Time, Severity, Origin, Text, ColumnCount };
  // The line's zu::log::Level as a number.
  static constexpr int LevelRole = Qt::UserRole;

  explicit LogModel(int capacity, QObject* parent = nullptr);

  void append(const std::vector<zu::log::Record>& records);
  void clear();
  // A whole line, as copied to the clipboard.
  QString line(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Line {
    zu::log::Record record;  // of the latest repetition
    int count = 1;
  };

  void add(const zu::log::Record& record);
  int rowRepeatedBy(const zu::log::Record& record) const;
  bool isAt(int row, const zu::log::Record& record) const;
  QString text(const Line& line, int column) const;

  const int fCapacity;
  std::deque<Line> fLines;
};

}  // namespace Lookout

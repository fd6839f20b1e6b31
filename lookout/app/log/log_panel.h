// SPDX-License-Identifier: Apache-2.0
// Shows what everything writes to the log.
#pragma once

#include <QWidget>

#include "log/log_feed.h"
#include "log/log_model.h"

class QComboBox;
class QSortFilterProxyModel;
class QTreeView;

namespace Lookout {

// The newest lines of the log, with a filter by level, copying and clearing. Stays at the end
// unless scrolled up. GUI thread.
class LogPanel : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kCapacity = 5000;

  explicit LogPanel(QWidget* parent = nullptr);

  const LogModel& model() const { return *fModel; }
  // The lines that pass the filter.
  int shownLines() const;
  // Shows lines at least as severe as this.
  void showLevel(zu::log::Level level);

 public slots:
  // The selected lines, or all that are shown when none is selected.
  void copy() const;
  void clear();

 private:
  void buildView();
  QWidget* buildTools();
  void append(const std::vector<zu::log::Record>& records);

  LogModel* fModel;
  QSortFilterProxyModel* fFilter;
  QTreeView* fView;
  QComboBox* fLevel = nullptr;
  LogFeed* fFeed;
};

}  // namespace Lookout

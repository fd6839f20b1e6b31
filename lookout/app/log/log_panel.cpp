// SPDX-License-Identifier: Apache-2.0
#include "log/log_panel.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

namespace Lookout {
namespace {

class LevelFilter : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

  void setLevel(int level) {
    fLevel = level;
    invalidateFilter();
  }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    return sourceModel()->index(row, 0, parent).data(LogModel::LevelRole).toInt() <= fLevel;
  }

 private:
  int fLevel = static_cast<int>(zu::log::Level::debug);
};

}  // namespace

LogPanel::LogPanel(QWidget* parent)
    : QWidget(parent),
      fModel(new LogModel(kCapacity, this)),
      fFilter(new LevelFilter(this)),
      fView(new QTreeView(this)),
      fFeed(new LogFeed(kCapacity, this)) {
  buildView();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(buildTools());
  layout->addWidget(fView);
  connect(fFeed, &LogFeed::lines, this, &LogPanel::append);
  showLevel(zu::log::Level::info);
}

void LogPanel::buildView() {
  fFilter->setSourceModel(fModel);
  fView->setModel(fFilter);
  fView->setRootIsDecorated(false);
  fView->setUniformRowHeights(true);
  fView->setSelectionMode(QAbstractItemView::ExtendedSelection);
  fView->setContextMenuPolicy(Qt::ActionsContextMenu);
  fView->header()->resizeSection(LogModel::Time, 110);
  fView->header()->resizeSection(LogModel::Severity, 70);
  fView->header()->resizeSection(LogModel::Origin, 210);

  auto* copyAction = new QAction(tr("&Copy"), fView);
  copyAction->setShortcut(QKeySequence::Copy);
  copyAction->setShortcutContext(Qt::WidgetShortcut);
  connect(copyAction, &QAction::triggered, this, &LogPanel::copy);
  auto* clearAction = new QAction(tr("C&lear"), fView);
  connect(clearAction, &QAction::triggered, this, &LogPanel::clear);
  fView->addActions({copyAction, clearAction});
}

QWidget* LogPanel::buildTools() {
  auto* tools = new QWidget(this);
  fLevel = new QComboBox(tools);
  fLevel->addItem(tr("Errors"), static_cast<int>(zu::log::Level::error));
  fLevel->addItem(tr("Warnings and errors"), static_cast<int>(zu::log::Level::warning));
  fLevel->addItem(tr("Information"), static_cast<int>(zu::log::Level::info));
  fLevel->addItem(tr("Everything"), static_cast<int>(zu::log::Level::debug));
  connect(fLevel, &QComboBox::currentIndexChanged, this,
          [this] { static_cast<LevelFilter*>(fFilter)->setLevel(fLevel->currentData().toInt()); });
  auto* copyButton = new QPushButton(tr("Copy"), tools);
  copyButton->setToolTip(tr("Copy the selected lines, or all that are shown"));
  connect(copyButton, &QPushButton::clicked, this, &LogPanel::copy);
  auto* clearButton = new QPushButton(tr("Clear"), tools);
  connect(clearButton, &QPushButton::clicked, this, &LogPanel::clear);

  auto* layout = new QHBoxLayout(tools);
  layout->setContentsMargins(4, 2, 4, 0);
  layout->addWidget(new QLabel(tr("Show:"), tools));
  layout->addWidget(fLevel);
  layout->addStretch(1);
  layout->addWidget(copyButton);
  layout->addWidget(clearButton);
  return tools;
}

int LogPanel::shownLines() const {
  return fFilter->rowCount();
}

void LogPanel::showLevel(zu::log::Level level) {
  fLevel->setCurrentIndex(fLevel->findData(static_cast<int>(level)));
}

void LogPanel::append(const std::vector<zu::log::Record>& records) {
  const QScrollBar* bar = fView->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  fModel->append(records);
  if (atEnd) fView->scrollToBottom();
}

void LogPanel::copy() const {
  QList<int> rows;
  for (const QModelIndex& index : fView->selectionModel()->selectedRows())
    rows.append(fFilter->mapToSource(index).row());
  std::sort(rows.begin(), rows.end());
  if (rows.isEmpty())
    for (int row = 0; row < fFilter->rowCount(); ++row)
      rows.append(fFilter->mapToSource(fFilter->index(row, 0)).row());
  QStringList lines;
  for (const int row : rows) lines.append(fModel->line(row));
  QGuiApplication::clipboard()->setText(lines.join('\n'));
}

void LogPanel::clear() {
  fModel->clear();
}

}  // namespace Lookout

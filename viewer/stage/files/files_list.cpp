// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/files_list.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <chrono>

#include "viewer/stage/files/files_delegate.h"
#include "viewer/stage/files/files_model.h"

namespace {

constexpr std::chrono::milliseconds kLookDelay{50};

}  // namespace

FilesList::FilesList(FilesModel* model, QWidget* parent) : QListView(parent), fModel(model) {
  setModel(model);
  setItemDelegate(new FilesDelegate(this));
  setSelectionMode(ExtendedSelection);
  setFlow(LeftToRight);
  setWrapping(true);
  setResizeMode(Adjust);
  setUniformItemSizes(true);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  setAccessibleName(tr("Photos and films on the robot"));
  fLook.setSingleShot(true);
  fLook.setInterval(kLookDelay);
  connect(&fLook, &QTimer::timeout, this, &FilesList::looked);
  const auto lookSoon = [this] {
    if (!fLook.isActive()) fLook.start();
  };
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, lookSoon);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, lookSoon);
  connect(model, &QAbstractItemModel::modelReset, this, lookSoon);
}

std::vector<int> FilesList::selectedRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectedIndexes()) rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  return rows;
}

void FilesList::setFiles(std::vector<RecordingFile> files) {
  std::vector<RecordingFile> selected;
  for (const int row : selectedRows()) selected.push_back(fModel->file(row));
  const int scrolled = verticalScrollBar()->value();
  fModel->setFiles(std::move(files));
  fitColumns();
  for (const RecordingFile& file : selected) {
    const int row = fModel->rowOf(file);
    if (row < 0) continue;
    if (!currentIndex().isValid())
      selectionModel()->setCurrentIndex(fModel->index(row), QItemSelectionModel::NoUpdate);
    selectionModel()->select(fModel->index(row), QItemSelectionModel::Select);
  }
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(scrolled);
  emit selectedChanged();
}

std::vector<int> FilesList::rowsInSight() const {
  std::vector<int> rows;
  const QRect sight = viewport()->rect();
  for (int row = 0; row < fModel->rowCount(); ++row) {
    const QRect place = visualRect(fModel->index(row));
    if (place.top() > sight.bottom()) break;
    if (place.intersects(sight)) rows.push_back(row);
  }
  return rows;
}

void FilesList::resizeEvent(QResizeEvent* event) {
  fitColumns();
  QListView::resizeEvent(event);
  if (!fLook.isActive()) fLook.start();
}

void FilesList::changeEvent(QEvent* event) {
  QListView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitColumns();
}

void FilesList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QListView::selectionChanged(selected, deselected);
  emit selectedChanged();
}

void FilesList::fitColumns() {
  setGridSize({});
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const QSize good = itemDelegate()->sizeHint(option, {});
  // A new row begins where nothing would be left of one.
  const auto columnsIn = [&](int width) { return std::max((width - 1) / good.width(), 1); };
  QSize room = contentsRect().size();
  const int columns = columnsIn(room.width());
  const int rows = (fModel->rowCount() + columns - 1) / columns;
  const bool isLong = rows * good.height() > room.height();
  if (isLong)
    room.rwidth() -= style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, verticalScrollBar());
  setVerticalScrollBarPolicy(isLong ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  setGridSize({std::max((room.width() - 1) / columnsIn(room.width()), 1), good.height()});
}

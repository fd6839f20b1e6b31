// SPDX-License-Identifier: Apache-2.0
// Paints a recording: its picture, its name, and what is to be said of it.
#pragma once

#include <QStyledItemDelegate>

// Of a FilesModel. GUI thread.
class FilesDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  // That of the list's grid, or where it has none, as high as it must be, and as wide as is good to
  // read.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

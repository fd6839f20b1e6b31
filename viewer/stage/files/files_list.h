// SPDX-License-Identifier: Apache-2.0
// The list of a robot's recordings, in as many columns as there is room for.
#pragma once

#include <QListView>
#include <QTimer>
#include <vector>

#include "viewer/stage/files/recording_file.h"

class FilesModel;

// GUI thread.
class FilesList : public QListView {
  Q_OBJECT

 public:
  FilesList(FilesModel* model, QWidget* parent);

  // From the first one on.
  std::vector<int> selectedRows() const;
  // As setFiles() of the model; what was selected stays so.
  void setFiles(std::vector<RecordingFile> files);
  // Those in sight, in their order.
  std::vector<int> rowsInSight() const;

 signals:
  // Other rows may be in sight; not more often than is good.
  void looked();
  void selectedChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  // The view leaves room for a scroll bar that may come; we know whether there is one.
  void fitColumns();

  FilesModel* fModel;
  QTimer fLook;
};

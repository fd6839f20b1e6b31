// SPDX-License-Identifier: Apache-2.0
// A robot's recordings, as a list shows them.
#pragma once

#include <QAbstractListModel>
#include <QImage>
#include <vector>

#include "viewer/stage/files/downloads.h"
#include "viewer/stage/files/recording_file.h"

// GUI thread.
class FilesModel : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit FilesModel(QObject* parent) : QAbstractListModel(parent) {}

  // Thumbnails and states of those that were there before stay.
  void setFiles(std::vector<RecordingFile> files);
  const RecordingFile& file(int row) const { return fRows[static_cast<std::size_t>(row)].file; }
  int rowOf(const RecordingFile& file) const;  // -1: it is not there

  bool hasThumbnail(int row) const;
  const QImage& thumbnail(int row) const { return fRows[static_cast<std::size_t>(row)].thumbnail; }
  const DownloadState& state(int row) const { return fRows[static_cast<std::size_t>(row)].state; }
  // Do nothing for a file that is not there.
  void setThumbnail(const RecordingFile& file, const QImage& thumbnail);
  void setState(const RecordingFile& file, const DownloadState& state);

  // What a row says below the name, for people: size and time, or how far its download is.
  QString details(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Row {
    RecordingFile file;
    QImage thumbnail;
    DownloadState state;
  };

  std::vector<Row> fRows;
};

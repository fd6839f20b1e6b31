// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/files_model.h"

#include <QLocale>
#include <algorithm>
#include <map>

namespace {

QString sizeText(qint64 bytes) {
  return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

QString timeText(const QDateTime& time) {
  return QLocale().toString(time.toLocalTime(), QLocale::ShortFormat);
}

QString describe(const RecordingFile& file) {
  QStringList parts;
  if (file.size >= 0) parts << sizeText(file.size);
  if (file.time.isValid()) parts << timeText(file.time);
  return parts.join(", ");
}

}  // namespace

void FilesModel::setFiles(std::vector<RecordingFile> files) {
  std::map<QString, Row> known;
  for (Row& row : fRows) known[row.file.name] = std::move(row);
  beginResetModel();
  fRows.clear();
  for (RecordingFile& file : files) {
    const auto before = known.find(file.name);
    const bool isSame = before != known.end() && before->second.file == file;
    fRows.push_back(isSame ? std::move(before->second) : Row{std::move(file), {}, {}});
  }
  endResetModel();
}

int FilesModel::rowOf(const RecordingFile& file) const {
  const auto found =
      std::find_if(fRows.begin(), fRows.end(), [&](const Row& row) { return row.file == file; });
  return found == fRows.end() ? -1 : static_cast<int>(found - fRows.begin());
}

bool FilesModel::hasThumbnail(int row) const {
  return !thumbnail(row).isNull();
}

void FilesModel::setThumbnail(const RecordingFile& file, const QImage& thumbnail) {
  const int row = rowOf(file);
  if (row < 0) return;
  fRows[static_cast<std::size_t>(row)].thumbnail = thumbnail;
  emit dataChanged(index(row), index(row));
}

void FilesModel::setState(const RecordingFile& file, const DownloadState& state) {
  const int row = rowOf(file);
  if (row < 0) return;
  fRows[static_cast<std::size_t>(row)].state = state;
  emit dataChanged(index(row), index(row));
}

QString FilesModel::details(int row) const {
  const DownloadState& now = state(row);
  switch (now.kind) {
    case DownloadState::Waiting:
      return tr("Waiting");
    case DownloadState::Running:
      return now.totalBytes > 0
                 ? tr("%1 of %2").arg(sizeText(now.readBytes), sizeText(now.totalBytes))
                 : sizeText(now.readBytes);
    case DownloadState::Failed:
      return tr("Not downloaded: %1").arg(now.error);
    case DownloadState::Done:
      return tr("%1, downloaded").arg(describe(file(row)));
    case DownloadState::None:
      break;
  }
  return describe(file(row));
}

int FilesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(fRows.size());
}

QVariant FilesModel::data(const QModelIndex& index, int role) const {
  const int row = index.row();
  switch (role) {
    case Qt::DisplayRole:
      return file(row).name;
    case Qt::AccessibleTextRole:
      return QString("%1, %2").arg(file(row).name, details(row));
    case Qt::ToolTipRole: {
      const QString& path = state(row).path;
      const QString text =
          file(row).name + '\n' + details(row) + (path.isEmpty() ? "" : '\n' + path);
      return "<span style='white-space:pre-wrap'>" + text.toHtmlEscaped() + "</span>";
    }
    default:
      return {};
  }
}

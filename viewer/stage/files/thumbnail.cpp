// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/thumbnail.h"

#include <QBuffer>
#include <QImageReader>

#include "viewer/stage/files/film_frame.h"

namespace {

constexpr qint64 kFilmBytes = 512 * 1024;
constexpr qint64 kLargestPhoto = 16 << 20;
constexpr qint64 kMostPixels = 64 << 20;

QSize shrunk(QSize size) {
  const bool fits =
      size.width() <= kThumbnailSize.width() && size.height() <= kThumbnailSize.height();
  return fits ? size : size.scaled(kThumbnailSize, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QImage photoOf(const QByteArray& bytes) {
  QBuffer buffer;
  buffer.setData(bytes);
  QImageReader reader(&buffer, "jpeg");
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (size.isEmpty() || qint64{size.width()} * size.height() > kMostPixels) return {};
  reader.setScaledSize(shrunk(size));
  return reader.read();
}

}  // namespace

qint64 bytesForThumbnail(const RecordingFile& file) {
  switch (file.kind()) {
    case RecordingKind::Photo:
      return file.size <= kLargestPhoto ? kLargestPhoto : 0;
    case RecordingKind::Film:
      return kFilmBytes;
    case RecordingKind::Other:
      break;
  }
  return 0;
}

QImage thumbnailOf(RecordingKind kind, const QByteArray& bytes) {
  if (kind == RecordingKind::Photo) return photoOf(bytes);
  const QImage frame = kind == RecordingKind::Film ? firstFrameOf(bytes) : QImage();
  if (frame.isNull()) return {};
  return frame.scaled(shrunk(frame.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// SPDX-License-Identifier: Apache-2.0
// Makes thumbnails on another thread, and keeps them on the disk.
#pragma once

#include <QByteArray>
#include <QImage>
#include <functional>
#include <memory>

#include "viewer/stage/files/recording_file.h"

// Thread-bound, on a thread with an event loop. Its end waits for nothing, whatever a file makes
// the decoder do.
class ThumbnailWorker {
 public:
  // Is called on the thread of the worker, while that lives. Null when there is no thumbnail.
  using Take = std::function<void(const QImage& thumbnail)>;

  ThumbnailWorker();
  ~ThumbnailWorker();
  ThumbnailWorker(const ThumbnailWorker&) = delete;
  ThumbnailWorker& operator=(const ThumbnailWorker&) = delete;

  // One that was made earlier. `key`: that of the recording.
  void find(const QString& key, Take take);
  // Makes one of the recording's bytes.
  void make(const QString& key, RecordingKind kind, const QByteArray& bytes, Take take);

 private:
  void run(std::function<QImage()> job, Take take);

  class Receiver;
  std::shared_ptr<Receiver> fReceiver;
};

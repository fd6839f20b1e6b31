// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/thumbnail_worker.h"

#include <QFile>
#include <QObject>
#include <QSaveFile>
#include <QThreadPool>

#include "viewer/stage/files/cache_folder.h"
#include "viewer/stage/files/thumbnail.h"
#include "zu/mutex.h"

namespace {

constexpr qint64 kMostBytes = 32 << 20;
constexpr int kQuality = 90;

CacheFolder folder() {
  return {"thumbnails", kMostBytes};
}

QImage findThumbnail(const QString& key) {
  QImage found;
  found.load(folder().path(key + ".jpg"), "jpeg");
  return found;
}

// Without a disk for it there is one all the same.
QImage makeThumbnail(const QString& key, RecordingKind kind, const QByteArray& bytes) {
  const QImage made = thumbnailOf(kind, bytes);
  QSaveFile file(folder().path(key + ".jpg"));
  if (made.isNull() || !file.open(QIODevice::WriteOnly)) return made;
  if (made.save(&file, "jpeg", kQuality)) file.commit();
  folder().trim();
  return made;
}

}  // namespace

// Where results go as long as somebody wants them. Thread-safe.
class ThumbnailWorker::Receiver {
 public:
  Receiver() : fContext(std::make_unique<QObject>()) {}

  void close() {
    const zu::MutexLock lock(fMutex);
    fContext.reset();
  }
  bool isClosed() const {
    const zu::MutexLock lock(fMutex);
    return !fContext;
  }
  void post(std::function<void()> result) {
    const zu::MutexLock lock(fMutex);
    if (fContext)
      QMetaObject::invokeMethod(fContext.get(), std::move(result), Qt::QueuedConnection);
  }

 private:
  mutable zu::Mutex fMutex;
  std::unique_ptr<QObject> fContext ZU_GUARDED_BY(fMutex);
};

ThumbnailWorker::ThumbnailWorker() : fReceiver(std::make_shared<Receiver>()) {
}

ThumbnailWorker::~ThumbnailWorker() {
  fReceiver->close();
}

void ThumbnailWorker::find(const QString& key, Take take) {
  run([key] { return findThumbnail(key); }, std::move(take));
}

void ThumbnailWorker::make(const QString& key, RecordingKind kind, const QByteArray& bytes,
                           Take take) {
  run([key, kind, bytes] { return makeThumbnail(key, kind, bytes); }, std::move(take));
}

void ThumbnailWorker::run(std::function<QImage()> job, Take take) {
  const auto work = [receiver = fReceiver, job = std::move(job), take = std::move(take)] {
    if (receiver->isClosed()) return;
    receiver->post([take, thumbnail = job()] { take(thumbnail); });
  };
  QThreadPool::globalInstance()->start(work);
}

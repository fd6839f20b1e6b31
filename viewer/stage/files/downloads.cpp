// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/downloads.h"

#include <QTimer>
#include <algorithm>

Downloads::Downloads(const QString& robot, QObject* parent)
    : QObject(parent), fErrand(robot, this) {
  connect(&fErrand, &FtpErrand::ended, this, &Downloads::onEnded);
  connect(&fErrand, &FtpErrand::progressed, this, [this](qint64 read, qint64 total) {
    emit changed(RecordingFile(fQueue.front().file), {DownloadState::Running, read, total, {}, {}});
  });
}

// What comes must not come into a file that has gone.
Downloads::~Downloads() {
  fErrand.stop();
}

void Downloads::add(const RecordingFile& file, const QString& folder) {
  const bool isQueued = std::any_of(fQueue.begin(), fQueue.end(), [&](const Queued& queued) {
    return queued.file == file && queued.folder == folder;
  });
  if (isQueued) return;
  fQueue.push_back({file, folder});
  startLater();
  emit changed(file, {DownloadState::Waiting, 0, 0, {}, {}});
}

void Downloads::cancel(const RecordingFile& file) {
  const RecordingFile cancelled = file;
  if (fPart && fQueue.front().file == cancelled) {
    fErrand.stop();
    fPart.reset();
  }
  const auto isIt = [&](const Queued& queued) { return queued.file == cancelled; };
  if (std::erase_if(fQueue, isIt) == 0) return;
  startLater();
  emit changed(cancelled, {});
}

void Downloads::startLater() {
  QTimer::singleShot(0, this, &Downloads::startNext);
}

void Downloads::startNext() {
  if (fPart || fErrand.isBusy()) return;
  if (fQueue.empty()) return fErrand.stop();  // keeps no connection that nobody needs
  const Queued next = fQueue.front();
  fPart = std::make_unique<PartFile>(next.folder, next.file.name);
  if (!fPart->isOpen())
    return onEnded(FtpErrand::Outcome::Failed,
                   tr("It can't be saved in %1: %2.").arg(next.folder, fPart->error()));
  fErrand.get(kRecordingsOnServer + next.file.name, fPart->device());
  emit changed(next.file, {DownloadState::Running, 0, std::max<qint64>(next.file.size, 0), {}, {}});
}

void Downloads::onEnded(FtpErrand::Outcome outcome, const QString& error) {
  const bool isDone = outcome == FtpErrand::Outcome::Done;
  const DownloadState state =
      isDone ? keep() : DownloadState{DownloadState::Failed, 0, 0, {}, error};
  fPart.reset();
  const RecordingFile file = fQueue.front().file;
  fQueue.pop_front();
  startLater();
  emit changed(file, state);
}

DownloadState Downloads::keep() {
  const QString path = fPart->keep(fQueue.front().file.time);
  if (!path.isEmpty()) return {DownloadState::Done, 0, 0, path, {}};
  return {DownloadState::Failed, 0, 0, {}, tr("It can't be saved: %1.").arg(fPart->error())};
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/thumbnails.h"

#include <algorithm>
#include <utility>

#include "viewer/stage/files/thumbnail.h"

Thumbnails::Thumbnails(const QString& robot, QObject* parent)
    : QObject(parent), fRobot(robot), fErrand(robot, this) {
  connect(&fErrand, &FtpErrand::ended, this, &Thumbnails::onFetched);
}

// What comes must not come into a buffer that has gone.
Thumbnails::~Thumbnails() {
  fErrand.stop();
}

void Thumbnails::want(std::vector<RecordingFile> files) {
  fWanted = std::move(files);
  next();
}

void Thumbnails::retry() {
  fFailed.clear();
  next();
}

void Thumbnails::next() {
  if (fIsBusy) return;
  const auto found =
      std::find_if(fWanted.begin(), fWanted.end(), [this](const RecordingFile& file) {
        return bytesForThumbnail(file) > 0 && !fFailed.contains(file.key(fRobot));
      });
  if (found == fWanted.end()) return fErrand.stop();  // keeps no connection that nobody needs
  fIsBusy = true;
  fFile = *found;
  fWorker.find(fFile.key(fRobot), [this](const QImage& thumbnail) { onFound(thumbnail); });
}

void Thumbnails::onFound(const QImage& thumbnail) {
  if (!thumbnail.isNull()) return onMade(thumbnail);
  fBytes.setData({});
  fBytes.open(QIODevice::WriteOnly);
  fErrand.get(kRecordingsOnServer + fFile.name, &fBytes, bytesForThumbnail(fFile));
}

void Thumbnails::onFetched(FtpErrand::Outcome outcome) {
  using Outcome = FtpErrand::Outcome;
  const QByteArray bytes = std::exchange(fBytes.buffer(), {});
  fBytes.close();
  if (outcome == Outcome::NoServer || outcome == Outcome::NoLogin || outcome == Outcome::WrongLogin)
    fWanted.clear();  // nor can the others be had
  if (outcome != Outcome::Done) return onMade({});
  fWorker.make(fFile.key(fRobot), fFile.kind(), bytes,
               [this](const QImage& thumbnail) { onMade(thumbnail); });
}

void Thumbnails::onMade(const QImage& thumbnail) {
  fIsBusy = false;
  const RecordingFile file = fFile;
  if (thumbnail.isNull()) fFailed.insert(file.key(fRobot));
  std::erase(fWanted, file);
  next();
  if (!thumbnail.isNull()) emit loaded(file, thumbnail);
}

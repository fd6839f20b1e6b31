// SPDX-License-Identifier: Apache-2.0
// Finds, or fetches and makes, the thumbnails that are looked at.
#pragma once

#include <QBuffer>
#include <QImage>
#include <QObject>
#include <QSet>
#include <vector>

#include "viewer/stage/files/ftp_errand.h"
#include "viewer/stage/files/recording_file.h"
#include "viewer/stage/files/thumbnail_worker.h"

// One at a time. GUI thread. May be deleted by whoever hears its signals.
class Thumbnails : public QObject {
  Q_OBJECT

 public:
  Thumbnails(const QString& robot, QObject* parent);
  ~Thumbnails() override;

  // Instead of those that were wanted before, in this order. One that could not be had is not tried
  // again, but after retry().
  void want(std::vector<RecordingFile> files);
  // The robot may be there again.
  void retry();

 signals:
  void loaded(const RecordingFile& file, const QImage& thumbnail);

 private:
  void next();
  void onFound(const QImage& thumbnail);
  void onFetched(FtpErrand::Outcome outcome);
  void onMade(const QImage& thumbnail);

  const QString fRobot;
  std::vector<RecordingFile> fWanted;
  QSet<QString> fFailed;  // keys
  bool fIsBusy = false;
  RecordingFile fFile;  // the one that it is busy with
  QBuffer fBytes;
  FtpErrand fErrand;
  ThumbnailWorker fWorker;
};

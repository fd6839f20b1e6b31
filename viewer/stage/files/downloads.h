// SPDX-License-Identifier: Apache-2.0
// Brings recordings from a robot, one after the other.
#pragma once

#include <QObject>
#include <deque>
#include <memory>

#include "viewer/stage/files/ftp_errand.h"
#include "viewer/stage/files/part_file.h"
#include "viewer/stage/files/recording_file.h"

// How far one is. Immutable.
struct DownloadState {
  enum Kind { None, Waiting, Running, Done, Failed };

  Kind kind = None;
  qint64 readBytes = 0;
  qint64 totalBytes = 0;  // 0: not known
  QString path;           // where it is, when it is done
  QString error;          // why it failed, for people
};

// GUI thread. May be deleted by whoever hears its signals.
class Downloads : public QObject {
  Q_OBJECT

 public:
  Downloads(const QString& robot, QObject* parent);
  ~Downloads() override;

  // Into `folder`, which is there, by its name on the robot, or that name with a number where there
  // is such a file already: none has that name before it is complete. Not once more while it waits
  // or comes into this folder.
  void add(const RecordingFile& file, const QString& folder);
  // Takes it out of the queue, for all folders; nothing of it is left.
  void cancel(const RecordingFile& file);

 signals:
  // None: it was cancelled.
  void changed(const RecordingFile& file, const DownloadState& state);

 private:
  struct Queued {
    RecordingFile file;
    QString folder;
  };

  void startLater();
  void startNext();
  void onEnded(FtpErrand::Outcome outcome, const QString& error);
  DownloadState keep();

  FtpErrand fErrand;
  std::deque<Queued> fQueue;        // the first one runs, or is about to
  std::unique_ptr<PartFile> fPart;  // of the one that runs
};

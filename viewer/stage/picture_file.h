// SPDX-License-Identifier: Apache-2.0
// Writes a picture without holding anybody up.
#pragma once

#include <QImage>
#include <QString>
#include <QThread>
#include <atomic>

// Writes a new PNG file, which is whole or not there: encoding a large picture takes a tenth of a
// second. Deletes itself when it has ended; the application waits for those that have not. GUI
// thread.
class PictureWriter : public QThread {
  Q_OBJECT

 public:
  // Takes the name at once, so that the next one is another, and begins.
  static PictureWriter* write(const QImage& picture, const QString& path);
  ~PictureWriter() override;

 signals:
  // Once, after control was back in the event loop. What went wrong and what to do, or empty.
  void ended(const QString& problem);

 protected:
  void run() override;

 private:
  PictureWriter(QImage picture, QString path, QString problem);
  void finish();

  const QImage fPicture;
  const QString fPath;
  QString fProblem;  // the thread's, until it has run
  std::atomic<bool> fHasRun = false;
};

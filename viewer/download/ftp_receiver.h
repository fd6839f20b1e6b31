// SPDX-License-Identifier: Apache-2.0
// Takes a file from libcurl into a device.
#pragma once

#include <curl/curl.h>

#include <QIODevice>
#include <QObject>
#include <QTimer>
#include <chrono>

class CurlLoop;

// For one transfer, from before it starts until after it has ended. Thread-bound, needs an event
// loop. May be deleted by whoever hears its signals.
class FtpReceiver : public QObject {
  Q_OBJECT

 public:
  // `loop`: the one that runs it. `device` is open for writing. Both outlive this. `silence`: how
  // long no byte may come. After `atMost` bytes the transfer fails.
  FtpReceiver(const CurlLoop& loop, CURL* transfer, QIODevice* device,
              std::chrono::milliseconds silence, qint64 atMost);

  // The file has come: tells how far it is for the last time. False when whoever heard it has
  // deleted us.
  bool finish();
  // There was more than was to be taken; what was is in the device.
  bool isCut() const { return fIsCut; }
  // Why the device took no more, for people.
  QString deviceError() const { return fDevice->errorString(); }

 signals:
  // At most 25 times a second, and at the end. `totalBytes` is 0 while it is not known.
  void progressed(qint64 readBytes, qint64 totalBytes);
  // Once, and nothing after it.
  void fellSilent();

 private:
  void watch();
  void tellProgress();

  static std::size_t onData(char* bytes, std::size_t size, std::size_t count, void* self);
  static int onProgress(void* self, curl_off_t total, curl_off_t done, curl_off_t, curl_off_t);

  const CurlLoop& fLoop;
  QIODevice* fDevice;
  const std::chrono::milliseconds fSilenceLimit;
  qint64 fLeft;  // bytes that may still come
  bool fIsCut = false;
  int fSilentPeriods = 0;  // since the last byte, counted while the event loop runs
  std::chrono::steady_clock::time_point fLastByte;
  qint64 fReadBytes = 0;
  qint64 fTotalBytes = 0;
  qint64 fToldBytes = -1;
  QTimer fTimer;
};

// SPDX-License-Identifier: Apache-2.0
// Runs transfers of libcurl on Qt's event loop.
#pragma once

#include <curl/curl.h>

#include <QObject>
#include <QTimer>
#include <chrono>
#include <map>
#include <memory>

class QSocketNotifier;

// One transfer at a time; connections are kept for the next one. Curl is never entered twice: what
// its callbacks are told must not be emitted before they return. Thread-bound, needs an event loop.
class CurlLoop : public QObject {
  Q_OBJECT

 public:
  explicit CurlLoop(QObject* parent);
  // No transfer may be running.
  ~CurlLoop() override;

  void start(CURL* transfer);
  // What was started must be stopped, also when it has ended. One that has not ends without a word,
  // and its connection with it.
  void stop(CURL* transfer);

  // When libcurl was entered that is in one of its callbacks now: how long it has held up the loop.
  std::chrono::steady_clock::time_point enteredAt() const { return fEnteredAt; }

 signals:
  // The last thing that is done in a turn of the loop: whoever hears it may do anything.
  void ended(int curlCode);

 private:
  struct Notifiers {
    std::unique_ptr<QSocketNotifier> read;
    std::unique_ptr<QSocketNotifier> write;
  };

  static int onSocket(CURL* transfer, curl_socket_t socket, int what, void* self, void* known);
  static int onTimer(CURLM* multi, long milliseconds, void* self);
  void watch(curl_socket_t socket, int what);
  void act(curl_socket_t socket, int what);

  CURLM* fMulti;
  CURL* fTransfer = nullptr;  // what runs
  std::chrono::steady_clock::time_point fEnteredAt;
  QTimer fTimer;
  QTimer fRescue;  // of a transfer that waits for nothing
  std::map<curl_socket_t, Notifiers> fNotifiers;
};

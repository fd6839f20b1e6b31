// SPDX-License-Identifier: Apache-2.0
// Waits until a server has said that it is one.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>

// Reads an FTP server's greeting without taking it out of the socket, so that libcurl meets it when
// it logs in later. Thread-bound, needs an event loop.
class FtpGreeting : public QObject {
  Q_OBJECT

 public:
  // The socket is connected, and outlives this.
  FtpGreeting(int socket, std::chrono::milliseconds limit);

 signals:
  // Once. Empty, or why this is nobody to log in at.
  void heard(const QString& error);

 private:
  void look();
  void end(const QString& error);

  int fSocket;
  QSocketNotifier fNotifier;
  QTimer fLimit;
};

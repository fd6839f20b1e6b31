// SPDX-License-Identifier: Apache-2.0
// One thing after the other at a robot's FTP server.
#pragma once

#include <QObject>
#include <functional>

#include "viewer/download/ftp_client.h"
#include "viewer/download/ftp_logins.h"

// Connects and logs in where need be, with the login that is known for the robot (FtpLogins), and
// does what it is told. GUI thread. May be deleted by whoever hears its signals.
class FtpErrand : public QObject {
  Q_OBJECT

 public:
  enum class Outcome {
    Done,
    NoServer,    // nobody to log in at
    NoLogin,     // there is a server, but no login is known
    WrongLogin,  // and forgotten
    Missing,     // there is no such file or folder
    Failed
  };

  FtpErrand(const QString& host, QObject* parent);

  // Instead of what goes on. As those of FtpClient.
  void list(const QString& folder);
  void get(const QString& file, QIODevice* to);
  void get(const QString& file, QIODevice* to, qint64 atMost);
  // Ends without a word what goes on, and the connection.
  void stop();

  bool isBusy() const { return static_cast<bool>(fWork); }
  // What the last list() found.
  const std::vector<FtpEntry>& entries() const { return fClient.entries(); }

 signals:
  // `error`: for people, empty when it is done.
  void ended(FtpErrand::Outcome outcome, const QString& error);
  void progressed(qint64 readBytes, qint64 totalBytes);

 private:
  void start(std::function<void()> work);
  void onFinished(int id, bool error);
  void onConnected();
  Outcome outcomeOf(FtpClient::Command command) const;
  void end(Outcome outcome, const QString& error);

  const QString fHost;
  FtpClient fClient;
  Dk::FtpLogin fLogin;          // of the connection
  std::function<void()> fWork;  // while it goes on
};

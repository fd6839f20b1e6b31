// SPDX-License-Identifier: Apache-2.0
// Lists and downloads files by FTP on Qt's event loop.
#pragma once

#include <QObject>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "viewer/download/ftp_listing.h"

class FtpConnection;
class QIODevice;

// Commands are queued and end in the order in which they were given, each with commandFinished(),
// and each with its own failures. One that can't follow on a failed one (a login without a
// connection, a transfer without a login) fails by itself. There is one control connection. FTP
// says everything in the clear, the password too; it is sent nowhere else.
//
// Thread-bound, needs an event loop. May be deleted at any time, also by whoever hears its signals.
class FtpClient : public QObject {
  Q_OBJECT

 public:
  enum Command { None, ConnectToHost, Login, Get, List };

  explicit FtpClient(QObject* parent = nullptr);
  ~FtpClient() override;

  // For commands that start later. `connect`: until there is a connection, and again until the
  // server has greeted, 10 s by default. `silence`: how long a login may take, and a transfer
  // without another byte, 20 s by default; whole seconds, at least 1. After its last byte the
  // server has 2 s to say that the file is complete.
  void setTimeLimits(std::chrono::milliseconds connect, std::chrono::seconds silence);

  // Each gives the number of its command. They start when control is back in the event loop.
  //
  // `host`: a name, an IPv4 or an IPv6 address.
  int connectToHost(const QString& host, quint16 port = 21);
  int login(const QString& user, const QString& password);
  // `file`: its path as the server knows it, in UTF-8, sent as it is. `to` is open for writing,
  // stays the caller's and must live until the command has ended.
  int get(const QString& file, QIODevice* to);
  // Of a file with more than `atMost` bytes only these, and they end the connection: then
  // connectToHost() and login() come again.
  int get(const QString& file, QIODevice* to, qint64 atMost);
  // `folder`: its path as the server knows it, in UTF-8; empty for that in which a login begins.
  // What is there is in entries(). The server must know MLSD.
  int list(const QString& folder);

  // Ends the current command and forgets all others, without a signal; then there is no connection.
  void abort();

  // What is current stays so while its commandFinished() is heard.
  Command currentCommand() const;
  // Of the last command that ended: what went wrong, for people. Empty when nothing did.
  QString errorString() const { return fError; }
  // Of the last command: the number with which the server refused it, such as 530 for a wrong login
  // and 550 for a file or folder that is not there; 0 when it didn't.
  int refusal() const;
  // Whether get() and list() can follow now.
  bool isLoggedIn() const;
  // What the last list() found, when it didn't fail.
  const std::vector<FtpEntry>& entries() const;

 signals:
  void commandFinished(int id, bool error);
  // At most 25 times a second, and at the end. `totalBytes` is 0 while it is not known.
  void dataTransferProgress(qint64 readBytes, qint64 totalBytes);

 private:
  struct Queued {
    int id;
    Command command;
    std::function<void()> start;
  };

  int enqueue(Command command, std::function<void()> start);
  void startNext();
  void finish(const QString& error);

  std::chrono::milliseconds fConnectLimit{10000};
  std::chrono::seconds fSilenceLimit{20};

  std::deque<Queued> fQueue;
  int fLastId = 0;
  bool fRunning = false;  // the first of the queue, until its end has been heard
  QString fError;
  std::unique_ptr<FtpConnection> fConnection;
};

// SPDX-License-Identifier: Apache-2.0
// A control connection to an FTP server.
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QObject>
#include <chrono>
#include <memory>
#include <vector>

#include "viewer/download/curl_loop.h"
#include "viewer/download/ftp_listing.h"

class FtpGreeting;
class FtpReceiver;
class QIODevice;

// Does one thing at a time: open(), logIn(), get() and list() each end with ended(), perhaps before
// they return. Thread-bound, needs an event loop. May be deleted by whoever hears its signals.
class FtpConnection : public QObject {
  Q_OBJECT

 public:
  FtpConnection();
  ~FtpConnection() override;

  // Instead of the connection that there was. `limit`: until it is there, and again until the
  // server has greeted.
  void open(const QString& host, quint16 port, std::chrono::milliseconds limit);
  // Closes the connection when it fails. `limit`: how long it may take, at least 1 s.
  void logIn(const QString& user, const QString& password, std::chrono::seconds limit);
  // `to` is open for writing and lives until the end. `silence`: how long no byte may come, at
  // least 1 s. Of a file with more than `atMost` bytes these are all, and the connection closes.
  void get(const QString& file, QIODevice* to, std::chrono::seconds silence, qint64 atMost);
  // What is found is in entries().
  void list(const QString& folder, std::chrono::seconds silence);
  // Ends without a word whatever goes on.
  void close();

  // Of the last list().
  const std::vector<FtpEntry>& entries() const { return fEntries; }
  bool isLoggedIn() const { return fState == State::LoggedIn; }
  // See FtpClient.
  int refusal() const { return fRefusal; }

 signals:
  // Empty, or what went wrong, for people. Whoever hears it may begin the next thing.
  void ended(const QString& error);
  // See FtpReceiver.
  void progressed(qint64 readBytes, qint64 totalBytes);

 private:
  struct CleanUp {
    void operator()(CURL* transfer) const { curl_easy_cleanup(transfer); }
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
  };
  // A transfer leads from each to the next; that of a file begins and ends in the last.
  enum class State { Closed, Open, LoggedIn };

  bool newTransfer(const char* scheme, const QString& path, std::chrono::milliseconds limit);
  void receive(QIODevice* to, std::chrono::seconds silence, qint64 atMost);
  void onEnded(int curlCode);
  QString takeListing();
  void finish(const QString& error, int refusal = 0);
  void awaitGreeting();
  void onGreeting(const QString& error);
  QString errorOf(CURLcode code) const;
  void dropTransfer();
  void dropConnection();

  QByteArray fHost;
  quint16 fPort = 0;
  QByteArray fUser;
  QByteArray fPassword;
  State fState = State::Closed;
  // The control connection's, beside libcurl's: to end it without waiting for the server's
  // farewell.
  int fSocket = -1;
  std::unique_ptr<FtpGreeting> fGreeting;  // until it was heard

  CurlLoop fLoop;
  std::unique_ptr<CURLU, CleanUp> fUrl;
  std::unique_ptr<CURL, CleanUp> fTransfer;
  std::unique_ptr<FtpReceiver> fReceiver;  // of a file or a listing
  QBuffer fListing;                        // open while one comes
  std::vector<FtpEntry> fEntries;
  int fRefusal = 0;
  std::chrono::milliseconds fLimit{0};  // of what goes on
  QByteArray fReply;                    // the server's last line
};

// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_client.h"

#include <QPointer>
#include <QTimer>
#include <limits>
#include <utility>

#include "viewer/download/ftp_connection.h"

FtpClient::FtpClient(QObject* parent)
    : QObject(parent), fConnection(std::make_unique<FtpConnection>()) {
  connect(fConnection.get(), &FtpConnection::ended, this, &FtpClient::finish);
  connect(fConnection.get(), &FtpConnection::progressed, this, &FtpClient::dataTransferProgress);
}

FtpClient::~FtpClient() = default;

void FtpClient::setTimeLimits(std::chrono::milliseconds connect, std::chrono::seconds silence) {
  fConnectLimit = connect;
  fSilenceLimit = silence;
}

int FtpClient::connectToHost(const QString& host, quint16 port) {
  return enqueue(ConnectToHost,
                 [this, host, port] { fConnection->open(host, port, fConnectLimit); });
}

int FtpClient::login(const QString& user, const QString& password) {
  return enqueue(Login,
                 [this, user, password] { fConnection->logIn(user, password, fSilenceLimit); });
}

int FtpClient::get(const QString& file, QIODevice* to) {
  return get(file, to, std::numeric_limits<qint64>::max());
}

int FtpClient::get(const QString& file, QIODevice* to, qint64 atMost) {
  return enqueue(Get,
                 [this, file, to, atMost] { fConnection->get(file, to, fSilenceLimit, atMost); });
}

int FtpClient::list(const QString& folder) {
  return enqueue(List, [this, folder] { fConnection->list(folder, fSilenceLimit); });
}

void FtpClient::abort() {
  fQueue.clear();
  fRunning = false;
  fConnection->close();
}

int FtpClient::refusal() const {
  return fConnection->refusal();
}

bool FtpClient::isLoggedIn() const {
  return fConnection->isLoggedIn();
}

const std::vector<FtpEntry>& FtpClient::entries() const {
  return fConnection->entries();
}

FtpClient::Command FtpClient::currentCommand() const {
  return fQueue.empty() ? None : fQueue.front().command;
}

int FtpClient::enqueue(Command command, std::function<void()> start) {
  fQueue.push_back({++fLastId, command, std::move(start)});
  QTimer::singleShot(0, this, &FtpClient::startNext);
  return fLastId;
}

void FtpClient::startNext() {
  if (fRunning || fQueue.empty()) return;
  fRunning = true;
  const auto start = fQueue.front().start;
  start();
}

// Whoever hears the signal may abort, give new commands, wait in an event loop, or delete us.
void FtpClient::finish(const QString& error) {
  fError = error;
  const int id = fQueue.front().id;
  const QPointer<FtpClient> self(this);
  emit commandFinished(id, !error.isEmpty());
  if (!self || fQueue.empty() || fQueue.front().id != id) return;
  fQueue.pop_front();
  fRunning = false;
  startNext();
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/ftp_errand.h"

#include <limits>
#include <utility>

#include "viewer/download/ftp_config.h"

namespace {

constexpr int kWrongLogin = 530;
constexpr int kMissing = 550;

}  // namespace

FtpErrand::FtpErrand(const QString& host, QObject* parent) : QObject(parent), fHost(host) {
  connect(&fClient, &FtpClient::commandFinished, this, &FtpErrand::onFinished);
  connect(&fClient, &FtpClient::dataTransferProgress, this, [this](qint64 read, qint64 total) {
    if (fClient.currentCommand() == FtpClient::Get) emit progressed(read, total);
  });
}

void FtpErrand::list(const QString& folder) {
  start([this, folder] { fClient.list(folder); });
}

void FtpErrand::get(const QString& file, QIODevice* to) {
  get(file, to, std::numeric_limits<qint64>::max());
}

void FtpErrand::get(const QString& file, QIODevice* to, qint64 atMost) {
  start([this, file, to, atMost] { fClient.get(file, to, atMost); });
}

void FtpErrand::stop() {
  fWork = nullptr;
  fClient.abort();
}

void FtpErrand::start(std::function<void()> work) {
  if (isBusy()) stop();
  fWork = std::move(work);
  if (fClient.isLoggedIn()) return fWork();
  fClient.connectToHost(fHost, static_cast<quint16>(Dk::FtpConfig::a_defaultPort));
}

void FtpErrand::onFinished(int /*id*/, bool error) {
  const FtpClient::Command command = fClient.currentCommand();
  if (error) return end(outcomeOf(command), fClient.errorString());
  if (command == FtpClient::ConnectToHost) return onConnected();
  if (command == FtpClient::Login) {
    Dk::keepFtpLogin(fHost, fLogin);
    return fWork();
  }
  end(Outcome::Done, {});
}

void FtpErrand::onConnected() {
  fLogin = Dk::ftpLoginOf(fHost);
  if (!fLogin.isComplete()) return end(Outcome::NoLogin, tr("Nobody is logged in."));
  fClient.login(fLogin.user, fLogin.password);
}

FtpErrand::Outcome FtpErrand::outcomeOf(FtpClient::Command command) const {
  if (command == FtpClient::ConnectToHost) return Outcome::NoServer;
  if (command == FtpClient::Login && fClient.refusal() == kWrongLogin) return Outcome::WrongLogin;
  const bool isMissing = command != FtpClient::Login && fClient.refusal() == kMissing;
  return isMissing ? Outcome::Missing : Outcome::Failed;
}

// A connection on which something went wrong is good for nothing more.
void FtpErrand::end(Outcome outcome, const QString& error) {
  if (outcome == Outcome::WrongLogin) Dk::dropFtpLogin(fHost, fLogin);
  fWork = nullptr;
  if (outcome != Outcome::Done) fClient.abort();
  emit ended(outcome, error);
}

// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_download_dialog.h"

#include <QFileInfo>
#include <QLabel>
#include <boost/make_shared.hpp>

#include "viewer/dialogs/error_dialog.h"
#include "viewer/dialogs/get_loginpassword_dialog.h"
#include "viewer/download/ftp_client.h"
#include "viewer/download/ftp_config.h"

namespace Dk {

FtpDownloadDialog::FtpDownloadDialog(const QString& host, const QString& remoteFile,
                                     const QString& localFile, QWidget* parent)
    : QProgressDialog(parent), fHost(host), fFtp(new FtpClient(this)) {
  setAutoClose(false);
  setWindowTitle(tr("File Transfer"));
  auto* label = new QLabel(this);
  label->setTextFormat(Qt::PlainText);  // whatever a file's name looks like
  label->setAlignment(Qt::AlignCenter);
  setLabel(label);
  setLabelText(tr("Downloading %1...").arg(remoteFile));

  connect(fFtp, SIGNAL(commandFinished(int, bool)), this, SLOT(ftpCommandFinished(int, bool)));
  connect(fFtp, SIGNAL(dataTransferProgress(qint64, qint64)), this,
          SLOT(updateDataTransferProgress(qint64, qint64)));
  fFtp->connectToHost(host, static_cast<quint16>(FtpConfig::a_defaultPort));
  if (askForLogin()) {
    fFtp->login(FtpConfig::a_login, FtpConfig::a_password);
    startTransfer(remoteFile, localFile);
  } else {
    reject();
  }
}

FtpDownloadDialog::~FtpDownloadDialog() {
  fFtp->abort();
  if (result() != Accepted) discardFile();
}

// Where the connection fails meanwhile, there is nothing to log in at: onCancel() closes the
// dialog.
bool FtpDownloadDialog::askForLogin() {
  if (!FtpConfig::a_login.isEmpty() && !FtpConfig::a_password.isEmpty()) return true;
  GetLoginPasswordDialog dialog(shownWindow());
  fLoginDialog = &dialog;
  if (dialog.exec() != Accepted || fEnded) return false;
  dialog.getLoginPassword(FtpConfig::a_login, FtpConfig::a_password);
  return true;
}

void FtpDownloadDialog::startTransfer(const QString& remoteFile, const QString& localFile) {
  fFile = boost::make_shared<QFile>(localFile);
  // Unbuffered, so that a full disk fails the transfer and not the closing.
  if (fFile->open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
    fFtp->get(remoteFile, fFile.get());
    connect(this, SIGNAL(canceled()), this, SLOT(onCancel()));
    return;
  }
  const QString text = tr("Unable to save the file %1: %2.").arg(localFile, fFile->errorString());
  fFile.reset();
  InformationDialog(tr("File Transfert"), text, shownWindow()).displayDialog();
  reject();
}

int FtpDownloadDialog::exec() {
  return fEnded ? result() : QProgressDialog::exec();
}

void FtpDownloadDialog::done(int result) {
  if (fEnded) return;
  fEnded = true;
  QProgressDialog::done(result);
}

void FtpDownloadDialog::onCancel() {
  fFtp->abort();
  discardFile();
  if (fLoginDialog) fLoginDialog->reject();
  reject();
}

void FtpDownloadDialog::discardFile() {
  if (!fFile) return;
  fFile->close();
  // A device that was written to is not ours to delete.
  if (QFileInfo(*fFile).isFile()) fFile->remove();
  fFile.reset();
}

void FtpDownloadDialog::ftpCommandFinished(int /*commandId*/, bool error) {
  switch (fFtp->currentCommand()) {
    case FtpClient::ConnectToHost:
      if (!error) return;
      showError(tr("Connection error"),
                tr("Unable to connect to the FTP server at %1. Are you sure you are connected to a "
                   "real robot, and a FTP server is running on it ?")
                    .arg(fHost));
      return onCancel();
    case FtpClient::Login:
      if (!error) return;
      showError(tr("Login failed"), tr("Could not login on FTP."));
      FtpConfig::a_login.clear();
      FtpConfig::a_password.clear();
      return;
    case FtpClient::Get:
      if (!error) {
        fFile->close();
        return accept();
      }
      showError(tr("Download failed"), tr("Could not upload %1.").arg(fFile->fileName()));
      return onCancel();
    default:
      return;
  }
}

void FtpDownloadDialog::updateDataTransferProgress(qint64 readBytes, qint64 totalBytes) {
  setMaximum(static_cast<int>(totalBytes));
  setValue(static_cast<int>(readBytes));
}

QWidget* FtpDownloadDialog::shownWindow() {
  if (fLoginDialog) return fLoginDialog;
  return isVisible() ? this : parentWidget();
}

void FtpDownloadDialog::showError(const QString& title, const QString& text) {
  ErrorDialog(title, text, fFtp->errorString(), shownWindow(), QMessageBox::Ok).displayDialog();
}

}  // namespace Dk

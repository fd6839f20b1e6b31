// SPDX-License-Identifier: Apache-2.0
// Brings one file from the robot to the desktop.
#pragma once

#include <QFile>
#include <QPointer>
#include <QProgressDialog>
#include <boost/shared_ptr.hpp>

class FtpClient;

namespace Dk {

// Shows how far the download is. The login is that of FtpConfig; where there is none, the user is
// asked. Run it with exec(): it ends accepted when the whole file has arrived, and otherwise
// rejected, after the user was told why; then nothing of the file is left. GUI thread only.
class FtpDownloadDialog : public QProgressDialog {
  Q_OBJECT

 public:
  // Begins with the transfer from port 21 of `host`. `remoteFile` is the path in the server's root
  // folder; `localFile` is overwritten.
  FtpDownloadDialog(const QString& host, const QString& remoteFile, const QString& localFile,
                    QWidget* parent);
  ~FtpDownloadDialog() override;

  // What does the transfer, for those who know better how long it may be silent.
  FtpClient& client() { return *fFtp; }

  // At once, when it has ended already.
  int exec() override;
  void done(int result) override;

 public slots:
  void onCancel();
  void ftpCommandFinished(int commandId, bool error);
  void updateDataTransferProgress(qint64 readBytes, qint64 totalBytes);

 private:
  bool askForLogin();
  void startTransfer(const QString& remoteFile, const QString& localFile);
  void discardFile();
  // What another dialog stands over: this one is not shown yet while its constructor asks.
  QWidget* shownWindow();
  void showError(const QString& title, const QString& text);

  QString fHost;
  FtpClient* fFtp;
  boost::shared_ptr<QFile> fFile;
  QPointer<QDialog> fLoginDialog;  // while it is open
  bool fEnded = false;
};

}  // namespace Dk

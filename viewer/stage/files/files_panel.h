// SPDX-License-Identifier: Apache-2.0
// The photos and films on a robot, to look at and to bring home.
#pragma once

#include <QPointer>
#include <QSet>

#include "lookout/lookout_widget.h"
#include "viewer/stage/files/cache_folder.h"
#include "viewer/stage/files/downloads.h"
#include "viewer/stage/files/ftp_errand.h"

class FilesList;
class FilesMessage;
class FilesModel;
class QAction;
class QDialog;
class QToolBar;
class Thumbnails;

// Speaks with the robot's FTP server while it is shown, and while something is downloaded, and with
// nobody before; what goes wrong it says in itself. Downloads go to keepFolder(). GUI thread. May
// be deleted at any time.
class FilesPanel : public LookoutWidget {
  Q_OBJECT

 public:
  FilesPanel(const QString& robotAddress, QWidget* parent);
  ~FilesPanel() override;

 public slots:
  // Looks what is there now. Is done by itself when the panel is shown, and is worth doing when
  // something was recorded. Nothing happens while the panel is hidden.
  void refresh();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  // Of `where`, where its keys count.
  QAction* addAction(const QString& text, const QList<QKeySequence>& keys, QWidget& where,
                     void (FilesPanel::*slot)());
  void makeActions();
  void connectAll();

  void onListed(FtpErrand::Outcome outcome, const QString& error);
  void showFiles(const std::vector<FtpEntry>& entries);
  void say(const QString& text);
  void offer(const QString& text, const QString& button, void (FilesPanel::*slot)());
  void makeRoom();
  void askForLogin();

  void download();
  void downloadTo();
  void open();
  void cancel();
  void copyPaths();
  void onDownload(const RecordingFile& file, const DownloadState& state);
  QString folderToView(const RecordingFile& file) const;
  QString localPathOf(int row) const;
  void openLocal(const QString& path);

  void updateActions();
  void wantThumbnails();

  const QString fRobot;
  FtpErrand fLister;
  Downloads fDownloads;
  CacheFolder fCache;
  QSet<QString> fToOpen;  // keys of what is to be opened when it has come
  QPointer<QDialog> fLoginDialog;
  bool fIsLoginTyped = false;  // and not tried yet

  FilesModel* fModel;
  Thumbnails* fThumbnails;
  QToolBar* fTools;
  FilesMessage* fMessage;
  FilesList* fList;
  QAction* fDownload = nullptr;
  QAction* fDownloadTo = nullptr;
  QAction* fOpen = nullptr;
  QAction* fCopy = nullptr;
  QAction* fCancel = nullptr;
};

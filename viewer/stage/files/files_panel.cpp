// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/files_panel.h"

#include <QAction>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QShowEvent>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "viewer/dialogs/get_loginpassword_dialog.h"
#include "viewer/stage/files/files_list.h"
#include "viewer/stage/files/files_message.h"
#include "viewer/stage/files/files_model.h"
#include "viewer/stage/files/thumbnails.h"
#include "viewer/stage/keep_folder.h"

namespace {

constexpr qint64 kMostViewed = qint64{1} << 30;

bool isUnderWay(const DownloadState& state) {
  return state.kind == DownloadState::Waiting || state.kind == DownloadState::Running;
}

}  // namespace

FilesPanel::FilesPanel(const QString& robotAddress, QWidget* parent)
    : LookoutWidget(parent),
      fRobot(robotAddress),
      fLister(robotAddress, nullptr),
      fDownloads(robotAddress, nullptr),
      fCache("recordings", kMostViewed),
      fModel(new FilesModel(this)),
      fThumbnails(new Thumbnails(robotAddress, this)),
      fTools(new QToolBar(this)),
      fMessage(new FilesMessage(this)),
      fList(new FilesList(fModel, this)) {
  setWindowTitle(tr("Files"));
  setFocusPolicy(Qt::StrongFocus);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(fTools);
  layout->addWidget(fMessage);
  layout->addWidget(fList, 1);
  fList->setFrameShape(QFrame::NoFrame);
  makeActions();
  connectAll();
  makeRoom();
  updateActions();
}

// The list outlives what it would tell of its end.
FilesPanel::~FilesPanel() {
  fList->disconnect(this);
}

void FilesPanel::makeActions() {
  auto* refreshing = addAction(tr("Refresh"), {Qt::Key_F5}, *this, &FilesPanel::refresh);
  fOpen = addAction(tr("Open"), {Qt::Key_Return, Qt::Key_Enter}, *fList, &FilesPanel::open);
  fDownload = addAction(tr("Download"), {Qt::CTRL | Qt::Key_D}, *fList, &FilesPanel::download);
  fDownloadTo = addAction(tr("Download To..."), {Qt::CTRL | Qt::SHIFT | Qt::Key_D}, *fList,
                          &FilesPanel::downloadTo);
  fCancel = addAction(tr("Cancel"), {Qt::Key_Escape}, *fList, &FilesPanel::cancel);
  fCopy = addAction(tr("Copy Path"), {QKeySequence::Copy}, *fList, &FilesPanel::copyPaths);
  fTools->setToolButtonStyle(Qt::ToolButtonTextOnly);
  fTools->setAccessibleName(tr("Files"));
  fTools->addActions({refreshing, fOpen, fDownload, fCancel, fCopy});
}

QAction* FilesPanel::addAction(const QString& text, const QList<QKeySequence>& keys, QWidget& where,
                               void (FilesPanel::*slot)()) {
  auto* action = new QAction(text, &where);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  action->setToolTip(QString("%1 (%2)").arg(text, keys.first().toString(QKeySequence::NativeText)));
  connect(action, &QAction::triggered, this, slot);
  where.addAction(action);
  return action;
}

void FilesPanel::connectAll() {
  connect(&fLister, &FtpErrand::ended, this, &FilesPanel::onListed);
  connect(&fDownloads, &Downloads::changed, this, &FilesPanel::onDownload);
  connect(fThumbnails, &Thumbnails::loaded, fModel, &FilesModel::setThumbnail);
  connect(fList, &FilesList::looked, this, &FilesPanel::wantThumbnails);
  connect(fList, &FilesList::selectedChanged, this, &FilesPanel::updateActions);
  connect(fList, &QListView::doubleClicked, this, &FilesPanel::open);
}

void FilesPanel::showEvent(QShowEvent* event) {
  LookoutWidget::showEvent(event);
  if (!event->spontaneous()) refresh();
}

void FilesPanel::hideEvent(QHideEvent* event) {
  LookoutWidget::hideEvent(event);
  if (event->spontaneous()) return;
  fLister.stop();
  fThumbnails->want({});
}

void FilesPanel::refresh() {
  if (!isVisible()) return;
  if (fModel->rowCount() == 0) say(tr("Looking..."));
  fLister.list(kRecordingsOnServer);
}

void FilesPanel::onListed(FtpErrand::Outcome outcome, const QString& error) {
  using Outcome = FtpErrand::Outcome;
  const bool isTyped = std::exchange(fIsLoginTyped, false);
  const std::vector<FtpEntry> entries = fLister.entries();
  fLister.stop();  // keeps no connection that nobody needs
  switch (outcome) {
    case Outcome::Done:
      return showFiles(entries);
    case Outcome::Missing:  // the robot makes the folder with the first one
      return showFiles({});
    case Outcome::NoServer:
      return offer(tr("The robot's files can't be reached: %1\nIs the robot on, and does its FTP "
                      "server run?")
                       .arg(error),
                   tr("Try Again"), &FilesPanel::refresh);
    case Outcome::NoLogin:
      return offer(tr("The robot shows its files after a login."), tr("Log In..."),
                   &FilesPanel::askForLogin);
    case Outcome::WrongLogin:
      offer(tr("The robot refused the user name or the password."), tr("Log In..."),
            &FilesPanel::askForLogin);
      if (isTyped) askForLogin();
      return;
    case Outcome::Failed:
      return offer(tr("The robot's files can't be listed: %1").arg(error), tr("Try Again"),
                   &FilesPanel::refresh);
  }
}

void FilesPanel::showFiles(const std::vector<FtpEntry>& entries) {
  fList->setFiles(recordingsIn(entries));
  if (fModel->rowCount() == 0) {
    say(tr("There are no photos and films on the robot yet."));
  } else {
    fMessage->hide();
  }
  makeRoom();
  fThumbnails->retry();
}

void FilesPanel::say(const QString& text) {
  fMessage->say(text);
}

void FilesPanel::offer(const QString& text, const QString& button, void (FilesPanel::*slot)()) {
  fMessage->say(text, button, [this, slot] { (this->*slot)(); });
}

// The message stands above what was there when it came, or alone.
void FilesPanel::makeRoom() {
  const bool isEmpty = fModel->rowCount() == 0;
  fList->setHidden(isEmpty);
  fMessage->setAlone(isEmpty);
  setFocusProxy(isEmpty ? nullptr : fList);
}

void FilesPanel::askForLogin() {
  if (fLoginDialog) return fLoginDialog->activateWindow();
  auto* dialog = new Dk::GetLoginPasswordDialog(this);
  fLoginDialog = dialog;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog] {
    Dk::FtpLogin login;
    dialog->getLoginPassword(login.user, login.password);
    Dk::keepFtpLogin(fRobot, login);
    fIsLoginTyped = true;
    refresh();
  });
  dialog->open();
}

void FilesPanel::download() {
  const QString folder = keepFolder();
  for (const int row : fList->selectedRows())
    if (!isUnderWay(fModel->state(row))) fDownloads.add(RecordingFile(fModel->file(row)), folder);
}

void FilesPanel::downloadTo() {
  auto* dialog = new QFileDialog(this, tr("Download To"), keepFolder());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
    setKeepFolder(folder);
    download();
  });
  dialog->open();
}

void FilesPanel::open() {
  const std::vector<int> rows = fList->selectedRows();
  if (rows.size() != 1 || !fOpen->isEnabled()) return;
  const RecordingFile file = fModel->file(rows.front());
  const QString path = localPathOf(rows.front());
  if (!path.isEmpty()) return openLocal(path);
  fToOpen.insert(file.key(fRobot));
  if (!isUnderWay(fModel->state(rows.front()))) fDownloads.add(file, folderToView(file));
}

void FilesPanel::cancel() {
  std::vector<RecordingFile> files;
  for (const int row : fList->selectedRows()) files.push_back(fModel->file(row));
  for (const RecordingFile& file : files) fDownloads.cancel(file);
}

void FilesPanel::copyPaths() {
  QStringList paths;
  for (const int row : fList->selectedRows()) paths << kRecordingsOnRobot + fModel->file(row).name;
  QGuiApplication::clipboard()->setText(paths.join('\n'));
}

void FilesPanel::onDownload(const RecordingFile& file, const DownloadState& state) {
  const bool isDone = state.kind == DownloadState::Done;
  const bool isViewed = isDone && QFileInfo(state.path).path() == folderToView(file);
  fModel->setState(file, isViewed ? DownloadState() : state);
  updateActions();
  if (isUnderWay(state)) return;
  if (isViewed) fCache.trim();
  if (fToOpen.remove(file.key(fRobot)) && isDone) openLocal(QString(state.path));
}

QString FilesPanel::folderToView(const RecordingFile& file) const {
  return QFileInfo(fCache.path(file.key(fRobot) + '/' + file.name)).path();
}

// Where it is on this computer already.
QString FilesPanel::localPathOf(int row) const {
  const RecordingFile& file = fModel->file(row);
  for (const QString& path : {fModel->state(row).path, folderToView(file) + '/' + file.name}) {
    const QFileInfo local(path);
    if (!path.isEmpty() && local.isFile() && (file.size < 0 || local.size() == file.size))
      return path;
  }
  return {};
}

void FilesPanel::openLocal(const QString& path) {
  if (QDesktopServices::openUrl(QUrl::fromLocalFile(path))) return;
  say(tr("This computer has no program to open %1 with.").arg(path));
}

void FilesPanel::updateActions() {
  const std::vector<int> rows = fList->selectedRows();
  const auto underWay = std::count_if(rows.begin(), rows.end(),
                                      [this](int row) { return isUnderWay(fModel->state(row)); });
  // Nothing else is opened: what a robot has may be anything, also a program.
  fOpen->setEnabled(rows.size() == 1 && fModel->file(rows.front()).kind() != RecordingKind::Other);
  fDownload->setEnabled(static_cast<std::size_t>(underWay) < rows.size());
  fDownloadTo->setEnabled(fDownload->isEnabled());
  fCancel->setEnabled(underWay > 0);
  fCopy->setEnabled(!rows.empty());
}

void FilesPanel::wantThumbnails() {
  if (!isVisible()) return;
  std::vector<RecordingFile> wanted;
  for (const int row : fList->rowsInSight())
    if (!fModel->hasThumbnail(row)) wanted.push_back(fModel->file(row));
  fThumbnails->want(std::move(wanted));
}

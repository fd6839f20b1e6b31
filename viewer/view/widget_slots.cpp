// SPDX-License-Identifier: Apache-2.0
// What the widget's buttons and the module's callbacks do.
#include <QDir>
#include <QFileDialog>
#include <QIcon>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QLayout>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>

#include "ky/error.h"
#include "viewer/acquisition/camera_thread.h"
#include "viewer/core/module.h"
#include "viewer/core/videorecordermodel.h"
#include "viewer/dialogs/error_dialog.h"
#include "viewer/download/ftp_download_dialog.h"
#include "viewer/recording/videorecordersettings_widget.h"
#include "viewer/settings/videosettings_widget.h"
#include "viewer/stage/files/files_panel.h"
#include "viewer/stage/stage.h"
#include "viewer/view/view_image.h"
#include "viewer/view/widget.h"

namespace {

constexpr int kStateVersion = 1;
const QString kStage = "stage";
const QString kFiles = "files";

// What Module::toggleVideoRecord() throws; translators find it by its whole text.
[[maybe_unused]] constexpr const char* kInvalidName =
    QT_TRANSLATE_NOOP("Widget", "Periscope.toggleVideoRecord: Invalid video name.");

}  // namespace

void Widget::setPlaying(bool playing) {
  if (playing) {
    onVideoStart();
  } else {
    onVideoStop();
  }
}

QByteArray Widget::saveState() const {
  QJsonObject state{{"version", kStateVersion}, {"settings", fVideoSettings->saveState()}};
  if (const QJsonObject film = xFilm(); !film.isEmpty()) state["film"] = film;
  return QJsonDocument(state).toJson(QJsonDocument::Compact);
}

bool Widget::restoreState(const QByteArray& state) {
  const QJsonObject read = QJsonDocument::fromJson(state).object();
  if (read["version"].toInt() != kStateVersion) return false;
  fVideoSettings->restoreState(read["settings"].toObject());
  xTakeUpFilm(read["film"].toObject());
  return true;
}

// Empty while it records none.
QJsonObject Widget::xFilm() const {
  const auto module = fModule.lock();
  const auto recorder = module ? module->model()->fVideoRecorder : nullptr;
  if (!recorder || !recorder->fIsRecording) return {};
  return {{"name", QString::fromStdString(recorder->fRecordName)},
          {"path", QString::fromStdString(recorder->fRunningPath)}};
}

void Widget::xTakeUpFilm(const QJsonObject& film) {
  const auto module = fModule.lock();
  const QString name = film["name"].toString();
  if (!module || !module->takeUpFilm(name.toStdString(), film["path"].toString().toStdString()))
    return;
  fVideoRecorderSettings->setRecordName(name);
  const int frames = module->model()->fVideoRecorder->fFrameCount;
  xSay(Notice::Kind::Done, (frames == 1 ? tr("Still recording %1: %2 frame up to now")
                                        : tr("Still recording %1: %2 frames up to now"))
                               .arg(name)
                               .arg(frames));
}

quint64 Widget::framesPainted() const {
  return fViewImage->framesPainted();
}

std::optional<std::chrono::steady_clock::time_point> Widget::lastPainted() const {
  return fViewImage->lastPainted();
}

double Widget::frameRateWanted() const {
  const auto module = fModule.lock();
  if (!module) return 0;
  const Ky::KyCriticalSectionRead guard(module->model()->fParamMutex);
  return module->model()->fFps;
}

QString Widget::pictureProblem() const {
  const auto module = fModule.lock();
  return module ? QString::fromStdString(module->model()->pictureProblem()) : QString();
}

QWidget* Widget::pictureArea() const {
  return fViewImage;
}

QString Widget::choose(const QString& setting, const QString& value) {
  return fVideoSettings->choose(setting, value);
}

QStringList Widget::viewKinds() const {
  return {kStage, kFiles};
}

LookoutWidget* Widget::makeView(const QString& kind, QWidget* parent) {
  const auto module = fModule.lock();
  if (kind == kStage && module) return new Stage(*this, module, fRobotAddress, parent);
  return kind == kFiles ? new FilesPanel(fRobotAddress, parent) : nullptr;
}

void Widget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (fViewImage->geometry().contains(event->pos())) emit viewWanted(kStage, false);
}

void Widget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_S && event->modifiers() == Qt::NoModifier)
    emit viewWanted(kStage, false);
  else
    LookoutWidget::keyPressEvent(event);
}

void Widget::onVideoStart() {
  if (fModule.expired()) return;
  fPlaying = true;
  fCameraThread->setEnableGetImage(true);
}

void Widget::onVideoStop() {
  if (fCameraThread == nullptr) return;
  fPlaying = false;
  fCameraThread->setEnableGetImage(false);
}

void Widget::onTakePicture() {
  fCameraThread->takePict();
  if (const auto module = fModule.lock()) xTellOfPhoto(module->lastPhoto());
}

void Widget::xTellOfPhoto(const PhotoReport& photo) {
  if (photo.error)
    xSay(Notice::Kind::Failed,
         tr("No photo was taken: %1").arg(QString::fromStdString(*photo.error)));
  else if (photo.path.empty())
    xSay(Notice::Kind::Done, tr("The photo is on the robot."));
  else
    xSay(Notice::Kind::Done, tr("Photo on the robot: %1").arg(QString::fromStdString(photo.path)));
}

void Widget::xSay(Notice::Kind kind, const QString& text) {
  constexpr int kGap = 8;
  if (fNotice == nullptr) fNotice = new Notice(this);
  layout()->activate();  // it may never have been shown yet
  const QRect room(QPoint(fViewImage->x(), fRecordButton->geometry().bottom() + kGap),
                   rect().bottomRight() - QPoint(kGap, kGap));
  fNotice->say(kind, text, room);
}

void Widget::onPreviousImage() {
  if (fCameraThread != nullptr) fCameraThread->previousImg();
}

void Widget::onNextImage() {
  if (fCameraThread != nullptr) fCameraThread->nextImg();
}

void Widget::onVideoRecord() {
  const auto module = fModule.lock();
  if (!module) return;
  const int framerate = static_cast<int>(fVideoRecorderSettings->getFramerate());
  bool recorded = false;
  try {
    module->toggleVideoRecord(fVideoRecorderSettings->getRecordName(), framerate, recorded);
  } catch (const Ky::KyError& error) {
    Dk::ErrorDialog("Error", tr(error.toString().c_str()), this, QMessageBox::NoButton)
        .displayDialog();
    return;
  }
  const auto recorder = module->model()->fVideoRecorder;
  if (recorded && recorder) xDownload(QString::fromStdString(recorder->fFilePath));
}

void Widget::xDownload(const QString& file) {
  const QString proposed = QDir::home().absolutePath() + "/" + QDir(file).dirName();
  const QString local = QFileDialog::getSaveFileName(this, tr("Upload video on your computer"),
                                                     proposed, tr("Videos (*.avi)"));
  if (local.isEmpty()) return;
  // The robot's FTP server is rooted there.
  const QString remote = QString(file).remove(QRegularExpression("^/home/tam/"));
  if (Dk::FtpDownloadDialog(fRobotAddress, remote, local, this).exec() != 0) return;
  Dk::ErrorDialog(tr("Error"), tr("Failed to upload file."), this, QMessageBox::NoButton)
      .displayDialog();
}

void Widget::updateImage() {
  if (fViewImage != nullptr) fViewImage->updateThreadSafe();
}

void Widget::updateVideoRecorderView() {
  const auto module = fModule.lock();
  if (!module || !module->model() || !module->model()->fVideoRecorder) return;
  const bool recording = module->model()->fVideoRecorder->fIsRecording;
  fRecordButton->setIcon(QIcon(fIconPath + (recording ? fRecordStopImg : fRecordStartImg)));
  fVideoRecorderSettings->updateFields();
}

void Widget::selectVideoRecorderView() {
  if (fTabWidget != nullptr) fTabWidget->setCurrentWidget(fVideoRecorderSettings);
}

// The same tab, on purpose.
void Widget::selectVideoSettingView() {
  selectVideoRecorderView();
}

// What the widget's buttons and the module's callbacks do.
#include <QIcon>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>

#include "acquisition/camera_thread.h"
#include "ky/error.h"
#include "plugin/module.h"
#include "recording/videorecordermodel.h"
#include "recording/videorecordersettings_widget.h"
#include "view/view_image.h"
#include "view/widget.h"

void Widget::setPlaying(bool playing) {
  if (playing) {
    onVideoStart();
  } else {
    onVideoStop();
  }
}

quint64 Widget::framesPainted() const {
  return fViewImage->framesPainted();
}

double Widget::shownFrameRate() const {
  return fViewImage->shownFrameRate();
}

void Widget::onVideoStart() {
  if (fModule.expired()) return;
  fCameraThread->setEnableGetImage(true);
  fPlaying = true;
}

void Widget::onVideoStop() {
  if (fCameraThread == nullptr) return;
  fCameraThread->setEnableGetImage(false);
  fPlaying = false;
}

void Widget::onTakePicture() {
  fCameraThread->takePict();
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
    QMessageBox::warning(this, "Error", tr(error.toString().c_str()));
  }
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

// SPDX-License-Identifier: Apache-2.0
#include "viewer/recording/videorecordersettings_widget.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "viewer/core/module.h"
#include "viewer/core/videorecordermodel.h"

namespace {

QString reportOf(const VideoRecorderModel& recorder) {
  const std::string frames =
      std::to_string(recorder.fFrameCount) + " frame" + (recorder.fFrameCount >= 2 ? "s" : "");
  return QString::fromStdString("'" + recorder.fRecordName + "' (" + frames +
                                ") was recorded on the robot.\nFile path: " + recorder.fFilePath);
}

}  // namespace

VideoRecorderSettingsWidget::VideoRecorderSettingsWidget(boost::shared_ptr<Module> module,
                                                         QWidget* parent)
    : QWidget(parent),
      fModule(module),
      fNameEdit(new QLineEdit("new", this)),
      fNameLabel(new QLabel("Video name - saved on the robot.", this)),
      fStatusLabel(new QLabel("Press record!", this)) {
  fNameLabel->setBuddy(fNameEdit);
  fNameEdit->setAccessibleName(tr("Video name"));
  fStatusLabel->setAccessibleName(tr("Recording status"));
  // Names and paths come from the robot: they are text, however they look, and may be long.
  fStatusLabel->setTextFormat(Qt::PlainText);
  fStatusLabel->setWordWrap(true);
  fStatusLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(fNameLabel);
  layout->addWidget(fNameEdit);
  layout->addWidget(fStatusLabel);
  layout->addStretch(1);
  setFixedSize(400, 600);
}

float VideoRecorderSettingsWidget::getFramerate() const {
  return 0;
}

std::string VideoRecorderSettingsWidget::getRecordName() const {
  return fNameEdit->text().toLatin1().toStdString();
}

void VideoRecorderSettingsWidget::setRecordName(const QString& name) {
  fNameEdit->setText(name);
}

void VideoRecorderSettingsWidget::xWidgetsSetEnabled(bool enabled) {
  fNameEdit->setEnabled(enabled);
}

void VideoRecorderSettingsWidget::updateFields() {
  const boost::shared_ptr<Module> module = fModule.lock();
  if (!module || !module->model() || !module->model()->fVideoRecorder) return;
  const VideoRecorderModel& recorder = *module->model()->fVideoRecorder;
  fStatusLabel->clear();
  if (recorder.fIsRecording) {
    fStatusLabel->setText(QString::fromStdString("Recording " + recorder.fRecordName + " ... "));
  } else if (recorder.fFrameCount >= 0) {
    fStatusLabel->setText(reportOf(recorder));
  }
  xWidgetsSetEnabled(!recorder.fIsRecording);
}

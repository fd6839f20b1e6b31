// SPDX-License-Identifier: Apache-2.0
// What others than the user's hand may set on the panel.
#include <QCheckBox>
#include <QComboBox>
#include <QSlider>

#include "ky/video_device_proxy.h"
#include "viewer/core/module.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

constexpr int kLeastRate = 1;  // the slider's 0 stops the pictures

// "640x480" for the "640 * 480" of the panel.
QString typed(QString size) {
  return size.remove(' ').replace('*', 'x');
}

}  // namespace

QString VideoSettingsWidget::choose(const QString& setting, const QString& value) {
  if (fModule.expired()) return tr("the robot is gone");
  if (setting == "size") return xChooseSize(value);
  if (setting == "fps") return xChooseRate(value);
  if (setting == "detect") return xChooseDetection(value);
  if (setting == "camera") return xChooseCamera(value);
  return tr("there is no setting '%1'; there are: size, fps, detect and camera").arg(setting);
}

QString VideoSettingsWidget::xChooseSize(const QString& size) {
  QStringList sizes;
  for (int i = 0; i < fResolution->count(); ++i) sizes << typed(fResolution->itemText(i));
  if (!sizes.contains(size))
    return tr("this camera has no size '%1'; it has: %2").arg(size, sizes.join(", "));
  fResolution->setCurrentIndex(static_cast<int>(sizes.indexOf(size)));
  return {};
}

QString VideoSettingsWidget::xChooseRate(const QString& rate) {
  QCustomSlider* slider = xGetCustomSlider("Framerate up to");
  if (slider == nullptr || slider->slider() == nullptr)
    return tr("this panel has no frame rate to set");
  bool isNumber = false;
  const int wanted = rate.toInt(&isNumber);
  const int most = slider->slider()->maximum();
  if (!isNumber || wanted < kLeastRate || wanted > most)
    return tr("the frame rate '%1' is no whole number from 1 to %2, which is the most at this size")
        .arg(rate)
        .arg(most);
  slider->setValue(wanted);
  return {};
}

QString VideoSettingsWidget::xChooseDetection(const QString& wanted) {
  QStringList kinds;
  for (const auto& [kind, box] : fDetections) {
    kinds << kind;
    if (kind != wanted) continue;
    box->setChecked(true);
    return {};
  }
  return tr("there is no detection '%1'; there are: %2").arg(wanted, kinds.join(", "));
}

QString VideoSettingsWidget::xChooseCamera(const QString& wanted) {
  if (wanted != "0" && wanted != "1")
    return tr("there is no camera '%1'; there are: 0 and 1").arg(wanted);
  const auto module = fModule.lock();
  int active = 0;
  if (!module || !module->getCameraParam(Ky::CameraParameter::kActiveCamera, active))
    return tr("which camera is active is not known");
  if (active != wanted.toInt()) onSwitchCameraSelected();
  return {};
}

// SPDX-License-Identifier: Apache-2.0
// What the panel remembers for the next one.
#include <QCheckBox>
#include <QComboBox>
#include <QJsonArray>

#include "ky/video_device_proxy.h"
#include "viewer/core/module.h"
#include "viewer/settings/videosettings_widget.h"

using enum Ky::CameraParameter;

namespace {

const QString kCameraKey = "camera";
const QString kResolutionKey = "resolution";
const QString kFrameRateKey = "frameRate";
const QString kBlackAndWhiteKey = "blackAndWhite";
const QString kDetectionsKey = "detections";

// The settings that the model mirrors: nobody is asked for them.
int mirrored(const boost::weak_ptr<Module>& weak, int parameter) {
  int value = 0;
  if (const auto module = weak.lock()) module->getCameraParam(parameter, value);
  return value;
}

}  // namespace

QJsonObject VideoSettingsWidget::saveState() const {
  QJsonArray detections;
  for (const auto& [kind, box] : fDetections)
    if (box->isChecked()) detections.append(kind);
  return {{kCameraKey, mirrored(fModule, kActiveCamera)},
          {kResolutionKey, fResolution->currentIndex()},
          {kFrameRateKey, mirrored(fModule, kFrameRate)},
          {kBlackAndWhiteKey, fBlackAndWhite->isChecked()},
          {kDetectionsKey, detections}};
}

void VideoSettingsWidget::restoreState(const QJsonObject& state) {
  const int active = mirrored(fModule, kActiveCamera);
  if (const int camera = state[kCameraKey].toInt(active); camera != active) onCameraSelect(camera);
  fResolution->setCurrentIndex(qBound(0, state[kResolutionKey].toInt(fResolution->currentIndex()),
                                      fResolution->count() - 1));
  const int rate = mirrored(fModule, kFrameRate);
  if (const int wanted = state[kFrameRateKey].toInt(rate); wanted != rate)
    if (QCustomSlider* slider = xGetCustomSlider("Framerate up to")) slider->setValue(wanted);
  fBlackAndWhite->setChecked(state[kBlackAndWhiteKey].toBool(fBlackAndWhite->isChecked()));
  const QJsonArray detections = state[kDetectionsKey].toArray();
  for (const auto& [kind, box] : fDetections)
    if (detections.contains(kind)) box->setChecked(true);
}

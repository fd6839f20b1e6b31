// SPDX-License-Identifier: Apache-2.0
// The panel's detection boxes. A box stays as the user left it, whatever comes of it.
#include "viewer/core/module.h"
#include "viewer/settings/videosettings_widget.h"

void VideoSettingsWidget::onBallDetection(int state) {
  xDetect("ball", state);
}

void VideoSettingsWidget::onDuckDetection(int state) {
  xDetect("duck", state);
}

void VideoSettingsWidget::onMarkDetection(int state) {
  xDetect("mark", state);
}

void VideoSettingsWidget::onFaceDetection(int state) {
  xDetect("face", state);
}

void VideoSettingsWidget::onLogoDetection(int state) {
  xDetect("logo", state);
}

void VideoSettingsWidget::onPictureRecognition(int state) {
  xDetect("picture", state);
}

void VideoSettingsWidget::xDetect(const char* kind, int state) const {
  if (const auto module = fModule.lock())
    module->activateDetection(kind, state == Qt::Checked ? 1 : 0);
}

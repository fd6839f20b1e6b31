// SPDX-License-Identifier: Apache-2.0
// What the panel does when the user acts, and how it follows the robot.
#include <QCheckBox>
#include <QComboBox>

#include "ky/video_device_proxy.h"
#include "viewer/core/module.h"
#include "viewer/settings/camera_reads.h"
#include "viewer/settings/videosettings_widget.h"

using enum Ky::CameraParameter;

namespace {

constexpr int kLargestResolution = 3;
constexpr int kFpsOfLargestResolution = 5;

bool isChecked(int state) {
  return state == Qt::Checked;
}

}  // namespace

void VideoSettingsWidget::onColorSpace(int state) {
  xWrite(kColorSpace, isChecked(state) ? 0 : 9);
}

void VideoSettingsWidget::onVerticalFlip(int state) {
  xWrite(kVerticalFlip, isChecked(state));
}

void VideoSettingsWidget::onHorizontalFlip(int state) {
  xWrite(kHorizontalFlip, isChecked(state));
}

void VideoSettingsWidget::xOnChangeSize(int) {
  const auto module = fModule.lock();
  if (!module) return;
  const int index = Model::resolutionFromString(fResolution->currentText().toStdString());
  if (QCustomSlider* frameRate = xGetCustomSlider("Framerate up to")) {
    if (index == kLargestResolution) {
      int fps = 0;
      if (module->getCameraParam(kFrameRate, fps) && fps > kFpsOfLargestResolution)
        module->setCameraParam(kFrameRate, kFpsOfLargestResolution);
      frameRate->initSlider(0, kFpsOfLargestResolution);
    } else {
      frameRate->initSlider(0, Model::fMaxFps);
    }
  }
  // Last: the robot should not meet the large pictures at the old rate.
  module->setCameraParam(kResolution, index);
}

void VideoSettingsWidget::onAutoExposition(int state) {
  if (fModule.expired()) return;
  xWrite(kAutoExposition, isChecked(state));
  xRefreshSlider("Exposure", kExposure, !isChecked(state));
  xRefreshSlider("Gain", kGain, !isChecked(state));  // camera model 2 only
  xOfferExposureCorrection();
}

// The slider before the robot, unlike above.
void VideoSettingsWidget::onAutoGain(int state) {
  if (fModule.expired()) return;
  xRefreshSlider("Gain (steps of 1/16)", kGain, !isChecked(state));
  xWrite(kAutoGain, isChecked(state));
  xOfferExposureCorrection();
}

void VideoSettingsWidget::onAutoWhiteBalance(int state) {
  if (fModule.expired()) return;
  xRefreshSlider("Blue chroma", kBlueChroma, !isChecked(state));      // camera model 1 only
  xRefreshSlider("Red chroma", kRedChroma, !isChecked(state));        // camera model 1 only
  xRefreshSlider("White balance", kWhiteBalance, !isChecked(state));  // camera model 2 only
  xWrite(kAutoWhiteBalance, isChecked(state));
}

void VideoSettingsWidget::onSwitchCameraSelected() {
  const auto module = fModule.lock();
  int camera = 0;
  if (!module || !module->getCameraParam(kActiveCamera, camera)) return;
  onCameraSelect(camera == 0 ? 1 : camera == 1 ? 0 : camera);
}

// Boxes and sliders that change here write their new state back to the robot, which has it already.
void VideoSettingsWidget::onCameraSelect(int camera) {
  const auto module = fModule.lock();
  if (!module) return;
  module->setCameraParam(kActiveCamera, camera);

  const CameraFollowing following(*module, fCameraModel);
  int colorSpace = 0;
  if (module->getCameraParam(kColorSpace, colorSpace)) fBlackAndWhite->setChecked(colorSpace == 0);

  if (fCameraModel == 1) {
    xFollowBox(fAutoGain, kAutoGain);
    xFollowSlider("Gain (steps of 1/16)", kGain, !fAutoGain->isChecked());
  } else if (fCameraModel == 2) {
    xFollowSlider("Gain", kGain, !xIsOn(kAutoExposition));
  }

  xFollowBox(fAutoWhiteBalance, kAutoWhiteBalance);
  const bool manualWhiteBalance = !fAutoWhiteBalance->isChecked();
  xFollowSlider("Blue chroma", kBlueChroma, manualWhiteBalance);
  xFollowSlider("Red chroma", kRedChroma, manualWhiteBalance);
  xFollowSlider("White balance", kWhiteBalance, manualWhiteBalance);

  xFollowBox(fAutoExposition, kAutoExposition);
  xFollowSlider("Exposure", kExposure, !fAutoExposition->isChecked());

  xFollowBox(fVerticalFlip, kVerticalFlip);
  xFollowBox(fHorizontalFlip, kHorizontalFlip);

  xFollowSlider("Brightness", kBrightness, true);
  xFollowSlider("Contrast", kContrast, true);
  xFollowSlider("Saturation", kSaturation, true);
  xFollowSlider("Hue", kHue, fCameraModel != 2);
}

void VideoSettingsWidget::xRefreshSlider(const std::string& name, int parameter, bool enable) {
  if (enable) {
    xFollowSlider(name, parameter, true);
  } else if (QCustomSlider* slider = xGetCustomSlider(name)) {
    slider->setActivation(false);
  }
}

void VideoSettingsWidget::xFollowSlider(const std::string& name, int parameter, bool enable) {
  const auto module = fModule.lock();
  QCustomSlider* slider = xGetCustomSlider(name);
  if (!module || slider == nullptr) return;
  slider->setActivation(enable);
  int value = 0;
  if (module->getCameraParam(parameter, value)) {
    slider->setValue(value);
  } else {
    slider->setActivation(false);
  }
}

void VideoSettingsWidget::xFollowBox(QCheckBox* box, int parameter) {
  const auto module = fModule.lock();
  int value = 0;
  if (module && box != nullptr && module->getCameraParam(parameter, value))
    box->setChecked(value != 0);
}

void VideoSettingsWidget::xOfferExposureCorrection() {
  QCustomSlider* slider = xGetCustomSlider("Exposure correction");
  if (slider == nullptr) return;
  const bool autoGain = xIsOn(kAutoGain);
  const bool autoExposition = xIsOn(kAutoExposition);
  slider->setActivation(autoGain || autoExposition);
}

bool VideoSettingsWidget::xIsOn(int parameter) const {
  const auto module = fModule.lock();
  int value = 0;
  return module && module->getCameraParam(parameter, value) && value != 0;
}

void VideoSettingsWidget::xWrite(int parameter, int value) const {
  if (const auto module = fModule.lock()) module->setCameraParam(parameter, value);
}

// SPDX-License-Identifier: Apache-2.0
// Building the panel.
#include "viewer/settings/videosettings_widget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ky/video_device_proxy.h"
#include "viewer/core/module.h"
#include "viewer/settings/text_size.h"
#include "viewer/settings/wheel_focus.h"

using enum Ky::CameraParameter;

namespace {

// Pixels between two rows: all of the first camera model's 24 have to fit.
constexpr int kRowSpacing = 4;

}  // namespace

VideoSettingsWidget::VideoSettingsWidget(boost::shared_ptr<Module> module, QWidget* parent)
    : QWidget(parent), fModule(module), fParent(qobject_cast<QTabWidget*>(parent)) {
  if (module) fCameraModel = module->getCameraModelID();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(otherParametersWidget());
  layout->addStretch();
  setFixedSize(400, 600);
}

void VideoSettingsWidget::showEvent(QShowEvent* event) {
  fitTexts(*this, fSliders);
  QWidget::showEvent(event);
}

QWidget* VideoSettingsWidget::otherParametersWidget() {
  auto* group = new QGroupBox("Other parameters", this);
  auto* layout = new QVBoxLayout(group);
  layout->setSpacing(kRowSpacing);
  xAddSlider(layout, "Framerate up to", kFrameRate, true, 0, Model::fMaxFps);
  xAddResolution(layout);
  fBlackAndWhite = xAddCheckBox(layout, "black and white", SLOT(onColorSpace(int)));
  xAddDetections(layout);
  xAddExposureAndGain(layout);
  xAddWhiteBalance(layout);
  xAddPicture(layout);
  return group;
}

QWidget* VideoSettingsWidget::initParametersWidget() {
  auto* group = new QGroupBox("Initialization parameters", this);
  auto* grid = new QGridLayout(group);
  grid->addWidget(new QLabel("Resolution :", group), 0, 0);
  grid->addWidget(new QComboBox(group), 0, 1);
  grid->addWidget(new QLabel("Color space :", group), 1, 0);
  grid->addWidget(new QComboBox(group), 1, 1);
  grid->addWidget(new QPushButton("Refresh", group), 2, 0);
  return group;
}

QCustomSlider* VideoSettingsWidget::xGetCustomSlider(std::string name) {
  return findSlider(fSliders, name);
}

void VideoSettingsWidget::xAddResolution(QBoxLayout* layout) {
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  auto* label = new QLabel("resolution", this);
  row->addWidget(label);
  fResolution = new QComboBox(this);
  label->setBuddy(fResolution);
  fResolution->setAccessibleName("resolution");
  needFocusForWheel(*fResolution);
  const int last = fCameraModel == 2 ? 3 : 2;
  for (int index = 0; index <= last; ++index)
    fResolution->addItem(QString::fromStdString(Model::resolutionToString(index)));
  // Before the connection: building the panel writes nothing.
  fResolution->setCurrentIndex(0);
  connect(fResolution, SIGNAL(currentIndexChanged(int)), this, SLOT(xOnChangeSize(int)));
  row->addWidget(fResolution);
  row->addStretch();
  layout->addLayout(row);
}

void VideoSettingsWidget::xAddDetections(QBoxLayout* layout) {
  xAddDetection(layout, "ball detection", "ball", SLOT(onBallDetection(int)));
  xAddDetection(layout, "duck detection", "duck", SLOT(onDuckDetection(int)));
  xAddDetection(layout, "mark detection", "mark", SLOT(onMarkDetection(int)));
  xAddDetection(layout, "face detection", "face", SLOT(onFaceDetection(int)));
  xAddDetection(layout, "logo detection", "logo", SLOT(onLogoDetection(int)));
  xAddDetection(layout, "vision recognition", "picture", SLOT(onPictureRecognition(int)));
}

void VideoSettingsWidget::xAddDetection(QBoxLayout* layout, const char* text, const char* kind,
                                        const char* slot) {
  QCheckBox* box = xAddCheckBox(layout, text, slot);
  fDetections.emplace_back(kind, box);
  // It can be tried all the same: the robot may start the extractor later.
  const auto module = fModule.lock();
  if (module && !module->activateDetection(kind, -1))
    box->setToolTip(tr("The robot did not offer this when the panel was opened."));
}

void VideoSettingsWidget::xAddExposureAndGain(QBoxLayout* layout) {
  fAutoExposition =
      xAddParameterBox(layout, "Auto exposition", kAutoExposition, SLOT(onAutoExposition(int)));
  const bool autoExposition = fAutoExposition->isChecked();
  xAddSlider(layout, "Exposure", kExposure, !autoExposition, 0, 510);
  if (fCameraModel == 1) {
    fAutoGain = xAddParameterBox(layout, "Auto gain", kAutoGain, SLOT(onAutoGain(int)));
    const bool autoGain = fAutoGain->isChecked();
    xAddSlider(layout, "Gain (steps of 1/16)", kGain, !autoGain, 0, 255);
    // Corrects what the automatic modes do: without any there is nothing to correct.
    xAddSlider(layout, "Exposure correction", kExposureCorrection, autoGain || autoExposition, -6,
               6);
  } else if (fCameraModel == 2) {
    xAddSlider(layout, "Gain", kGain, !autoExposition, 32, 255);
  }
}

void VideoSettingsWidget::xAddWhiteBalance(QBoxLayout* layout) {
  fAutoWhiteBalance = xAddParameterBox(layout, "Auto white balance", kAutoWhiteBalance,
                                       SLOT(onAutoWhiteBalance(int)));
  const bool manual = !fAutoWhiteBalance->isChecked();
  if (fCameraModel == 1) {
    xAddSlider(layout, "Blue chroma", kBlueChroma, manual, 0, 255);
    xAddSlider(layout, "Red chroma", kRedChroma, manual, 0, 255);
  } else if (fCameraModel == 2) {
    xAddSlider(layout, "White balance", kWhiteBalance, manual, -120, -36);
  }
}

void VideoSettingsWidget::xAddPicture(QBoxLayout* layout) {
  xAddSlider(layout, "Brightness", kBrightness, true, 0, 255);
  xAddSlider(layout, "Contrast", kContrast, true, 0, 127);
  xAddSlider(layout, "Saturation", kSaturation, true, 0, 255);
  xAddSlider(layout, "Hue", kHue, fCameraModel != 2, -180, 180);
  fVerticalFlip =
      xAddParameterBox(layout, "Vertical Flip", kVerticalFlip, SLOT(onVerticalFlip(int)));
  fHorizontalFlip =
      xAddParameterBox(layout, "Horizontal Flip", kHorizontalFlip, SLOT(onHorizontalFlip(int)));
}

void VideoSettingsWidget::xAddSlider(QBoxLayout* layout, const std::string& name, int parameter,
                                     bool activation, int minimum, int maximum) {
  fSliders.push_back(std::make_unique<QCustomSlider>(this, fModule.lock(), name, parameter,
                                                     activation, minimum, maximum, true));
  if (QLayout* row = fSliders.back()->init()) layout->addLayout(row);
}

QCheckBox* VideoSettingsWidget::xAddCheckBox(QBoxLayout* layout, const char* text,
                                             const char* slot) {
  auto* box = new QCheckBox(text, this);
  connect(box, SIGNAL(stateChanged(int)), this, slot);
  layout->addWidget(box);
  return box;
}

QCheckBox* VideoSettingsWidget::xAddParameterBox(QBoxLayout* layout, const char* text,
                                                 int parameter, const char* slot) {
  auto* box = new QCheckBox(text, this);
  // Before the connection: building the panel writes nothing.
  box->setChecked(xIsOn(parameter));
  connect(box, SIGNAL(stateChanged(int)), this, slot);
  layout->addWidget(box);
  return box;
}

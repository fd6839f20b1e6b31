// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/custom_slider.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <algorithm>
#include <utility>

#include "viewer/core/module.h"
#include "viewer/settings/wheel_focus.h"

namespace {

constexpr int kNameWidth = 120;
constexpr int kValueWidth = 30;
constexpr int kLeastSliderWidth = 100;  // to aim at
constexpr int kRowSpacing = 6;          // whatever the panel's own

int widthOf(const QLabel* label, const QString& text) {
  return label->fontMetrics().horizontalAdvance(text);
}

}  // namespace

QCustomSlider::QCustomSlider(QWidget* parent, boost::shared_ptr<Module> module, std::string name,
                             int parameterId, bool activation, int minimum, int maximum,
                             bool writeThrough)
    : fModule(module),
      fParent(parent),
      fWriteThrough(writeThrough),
      fName(std::move(name)),
      fParameterId(parameterId),
      fActivation(activation),
      fMinimum(minimum),
      fMaximum(maximum) {
}

QLabel* QCustomSlider::newLabel(const QString& text, int width) {
  auto* label = new QLabel(text, fParent);
  label->setEnabled(fActivation);
  label->setFixedWidth(width);
  return label;
}

QLayout* QCustomSlider::init() {
  const boost::shared_ptr<Module> module = fModule.lock();
  if (!module) return nullptr;

  auto* row = new QHBoxLayout;
  row->setSpacing(kRowSpacing);
  fNameLabel = newLabel(QString::fromStdString(fName), kNameWidth);
  row->addWidget(fNameLabel);

  int value = fMinimum;
  const bool known = module->getCameraParam(fParameterId, value);
  if (value < fMinimum || value > fMaximum) value = fMinimum;

  fValueLabel = newLabel(QString::number(value), kValueWidth);
  row->addWidget(fValueLabel);

  fSlider = new QSlider(Qt::Horizontal, fParent);
  fSlider->setMinimumWidth(kLeastSliderWidth);
  fSlider->setAccessibleName(QString::fromStdString(fName));
  needFocusForWheel(*fSlider);
  row->addWidget(fSlider);
  fSlider->setEnabled(fActivation);
  fSlider->setRange(fMinimum, fMaximum);
  fSlider->setSliderPosition(value);
  connect(fSlider, SIGNAL(valueChanged(int)), this, SLOT(onChanged(int)));

  if (!known) setActivation(false);
  return row;
}

bool QCustomSlider::initSlider(int minimum, int maximum) {
  if (fSlider == nullptr) return false;
  fSlider->setRange(minimum, maximum);
  return true;
}

bool QCustomSlider::initLabel(int width) {
  if (fNameLabel == nullptr) return false;
  fNameLabel->setText(QString::fromStdString(fName));
  fNameLabel->setFixedWidth(width);
  return true;
}

bool QCustomSlider::initValueLabel(std::string text, int width) {
  if (fValueLabel == nullptr) return false;
  fValueLabel->setText(QString::fromStdString(text));
  fValueLabel->setFixedWidth(width);
  return true;
}

int QCustomSlider::neededNameWidth() const {
  return std::max(kNameWidth, widthOf(fNameLabel, fNameLabel->text()));
}

int QCustomSlider::neededValueWidth() const {
  return std::max({kValueWidth, widthOf(fValueLabel, QString::number(fSlider->minimum())),
                   widthOf(fValueLabel, QString::number(fSlider->maximum()))});
}

void QCustomSlider::setLabelWidths(int name, int value) {
  fNameLabel->setFixedWidth(name);
  fValueLabel->setFixedWidth(value);
}

bool QCustomSlider::setActivation(bool on) {
  fActivation = on;
  if (fNameLabel == nullptr || fValueLabel == nullptr || fSlider == nullptr) return false;
  fNameLabel->setEnabled(on);
  fValueLabel->setEnabled(on);
  fSlider->setEnabled(on);
  return true;
}

bool QCustomSlider::setValue(int value) {
  if (fSlider == nullptr || fValueLabel == nullptr) return false;
  fValueLabel->setText(QString::number(value));
  fSlider->setSliderPosition(value);
  return true;
}

void QCustomSlider::onChanged(int value) {
  if (fValueLabel != nullptr) fValueLabel->setText(QString::number(value));
  if (!fActivation) return;
  const boost::shared_ptr<Module> module = fModule.lock();
  if (!module) return;
  if (fWriteThrough) module->setCameraParam(fParameterId, value);
}

QCustomSlider* findSlider(const QCustomSliders& sliders, const std::string& name) {
  for (const auto& slider : sliders)
    if (slider->getName() == name) return slider.get();
  return nullptr;
}

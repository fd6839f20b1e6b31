// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/uraballsettings_widget.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <limits>
#include <optional>

#include "viewer/core/module.h"
#include "viewer/settings/text_size.h"

struct UraballSettingsWidget::Control {
  const char* parameter;
  const char* name;
  int minimum;
  int maximum;
  const char* slot;
  bool activation = true;
  std::size_t elements = 1;  // of the parameter's array; of two the difference is shown
};

namespace {

const char kY[] = "Ball Y component";
const char kU[] = "Ball U component";
const char kV[] = "Ball V component";
const char kMinRadius[] = "Minimum radius";
const char kRadiusRange[] = "Radius range";
const char kSensitivity[] = "Center detection sensitivity";
const char kTolerance[] = "Color tolerance";
const char kMaxSpeed[] = "Max speed (pix/s)";

// Nothing when the array is of another size. Throws Ky::KyError when its elements are no ints.
std::optional<int> shownValue(const Ky::KyValue& value, std::size_t elements) {
  if (!value.isArray() || value.size() != elements) return std::nullopt;
  if (elements == 1) return value[0].asInt();
  const std::int64_t range = std::int64_t{value[1].asInt()} - value[0].asInt();
  return static_cast<int>(std::clamp<std::int64_t>(range, std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::max()));
}

void say(const std::string& line) {
  std::cout << line << std::endl;
}

}  // namespace

UraballSettingsWidget::UraballSettingsWidget(boost::shared_ptr<Module> module, QWidget* parent)
    : QWidget(parent), fModule(module) {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(otherParametersWidget());
  layout->addStretch();
  setFixedSize(400, 600);
}

void UraballSettingsWidget::showEvent(QShowEvent* event) {
  fitTexts(*this, fSliders);
  QWidget::showEvent(event);
}

QWidget* UraballSettingsWidget::otherParametersWidget() {
  auto* group = new QGroupBox("Other parameters", this);
  auto* layout = new QVBoxLayout(group);
  xAddSlider(layout, {"CY", kY, 0, 255, SLOT(onChangedYComponent())});
  xAddSlider(layout, {"CU", kU, 0, 255, SLOT(onChangedUComponent())});
  xAddSlider(layout, {"CV", kV, 0, 255, SLOT(onChangedVComponent())});
  xAddSlider(layout, {"minRadius", kMinRadius, 8, 359, SLOT(onChangedMinRadiusComponent())});
  xAddSlider(layout,
             {"radiusRange", kRadiusRange, 0, 360, SLOT(onChangedRadiusRangeComponent()), true, 2});
  xAddSlider(layout, {"sensitivity", kSensitivity, 1, 4, SLOT(onChangedSensibComponent())});
  xAddSlider(layout, {"colorTolerance", kTolerance, 0, 255, SLOT(onChangedSeuilComponent())});
  fTracking = xAddCheckBox(layout, "Tracking", SLOT(onChangedTracking(int)));
  xAddSlider(layout, {"maxShift", kMaxSpeed, 0, 1000, SLOT(onChangedDepMaxComponent()), false});
  xGetCustomSlider(kMaxSpeed)->setActivation(fTracking->isChecked());
  fMultipleBalls =
      xAddCheckBox(layout, "Multiple balls tracking", SLOT(onChangedMultipleBallsTracking(int)));
  fOptimisation =
      xAddCheckBox(layout, "Enable optimisation (higher noise)", SLOT(onChangedOptimisation(int)));
  return group;
}

QWidget* UraballSettingsWidget::initParametersWidget() {
  return new QGroupBox("Initialization parameters", this);
}

QCustomSlider* UraballSettingsWidget::xGetCustomSlider(std::string name) {
  return findSlider(fSliders, name);
}

void UraballSettingsWidget::xAddSlider(QBoxLayout* layout, const Control& control) {
  // Bound to a camera parameter only because a slider is; it never writes it.
  fSliders.push_back(std::make_unique<QCustomSlider>(this, fModule.lock(), control.name, 0,
                                                     control.activation, control.minimum,
                                                     control.maximum, false));
  QCustomSlider& slider = *fSliders.back();
  QLayout* row = slider.init();
  if (row == nullptr) return;
  layout->addLayout(row);
  connect(slider.slider(), SIGNAL(sliderReleased()), this, control.slot);
  xShowValue(control);
}

QCheckBox* UraballSettingsWidget::xAddCheckBox(QBoxLayout* layout, const char* text,
                                               const char* slot) {
  auto* box = new QCheckBox(text, this);
  connect(box, SIGNAL(stateChanged(int)), this, slot);
  layout->addWidget(box);
  return box;
}

void UraballSettingsWidget::xShowValue(const Control& control) {
  const auto module = fModule.lock();
  if (!module) return;
  const std::string parameter = control.parameter;
  Ky::KyValue value;
  try {
    if (!module->getUraballParam(parameter, value)) {
      say("error while getting " + parameter + " parameter");
    } else if (const auto shown = shownValue(value, control.elements)) {
      xGetCustomSlider(control.name)->setValue(*shown);
    } else {
      say(parameter + " parameter size mismatch");
    }
  } catch (const Ky::KyError&) {
    say("error while getting " + parameter + " parameter");
  }
}

void UraballSettingsWidget::onChangedYComponent() {
  xWriteSlider("CY", kY);
}

void UraballSettingsWidget::onChangedUComponent() {
  xWriteSlider("CU", kU);
}

void UraballSettingsWidget::onChangedVComponent() {
  xWriteSlider("CV", kV);
}

void UraballSettingsWidget::onChangedMinRadiusComponent() {
  xWriteSlider("minRadius", kMinRadius);
}

void UraballSettingsWidget::onChangedRadiusRangeComponent() {
  const int smallest = xPosition(kMinRadius);
  xWrite("radiusRange", Ky::KyValue::array({smallest, smallest + xPosition(kRadiusRange)}));
}

void UraballSettingsWidget::onChangedSensibComponent() {
  xWriteSlider("sensitivity", kSensitivity);
}

void UraballSettingsWidget::onChangedSeuilComponent() {
  xWriteSlider("colorTolerance", kTolerance);
}

void UraballSettingsWidget::onChangedTracking(int state) {
  if (fModule.expired()) return;
  xWriteBox("useTracking", state);
  // Any state but unchecked, unlike the value written.
  xGetCustomSlider(kMaxSpeed)->setActivation(state != Qt::Unchecked);
}

void UraballSettingsWidget::onChangedDepMaxComponent() {
  xWriteSlider("maxShift", kMaxSpeed);
}

void UraballSettingsWidget::onChangedMultipleBallsTracking(int state) {
  xWriteBox("multiBall", state);
}

void UraballSettingsWidget::onChangedOptimisation(int state) {
  xWriteBox("Optimax", state);
}

int UraballSettingsWidget::xPosition(const char* name) {
  const QSlider* slider = xGetCustomSlider(name)->slider();
  return slider != nullptr ? slider->sliderPosition() : 0;
}

void UraballSettingsWidget::xWriteSlider(const char* parameter, const char* name) {
  xWrite(parameter, Ky::KyValue::array({xPosition(name)}));
}

void UraballSettingsWidget::xWriteBox(const char* parameter, int state) {
  xWrite(parameter, Ky::KyValue::array({state == Qt::Checked}));
}

void UraballSettingsWidget::xWrite(const char* parameter, Ky::KyValue value) {
  if (const auto module = fModule.lock()) module->setUraballParam(parameter, value);
}

// SPDX-License-Identifier: Apache-2.0
#include "desktop.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSlider>
#include <QStandardPaths>
#include <stdexcept>

#include "ky/video_device_proxy.h"
#include "lookout/widget_interface.h"
#include "robots/robot_dock.h"
#include "window/robot_area.h"

namespace {

// None of them is what a new viewer begins with.
constexpr int kResolution = 2;  // 640 x 480
constexpr int kFrameRate = 10;
const QString kDetection = "mark detection";
const std::string kDetected = "LandmarkDetected";  // the generated scene always shows one

const QString kResolutionName = "resolution";
const QString kFrameRateName = "Framerate up to";
const QString kOtherSliderName = "Brightness";
const QString kPhotoName = "Snapshot";

}  // namespace

Desktop::Desktop(const Ky::KyAddress& robot) : fRobot(robot) {
  QStandardPaths::setTestModeEnabled(true);
  fWindow = std::make_unique<Lookout::MainWindow>(LOOKOUT_PLUGINS, LOOKOUT_ICONS,
                                                  Lookout::MainWindow::Past::Ignored);
  fWindow->show();
  dock();
}

void Desktop::dock() {
  Lookout::RobotDock* dock = fWindow->connectTo(fRobot);
  if (dock == nullptr) throw std::runtime_error("there is no plug-in for robots");
  fSession = &dock->session();
  fSession->setPlaying(true);
  if (!waitUntil([this] { return framesPainted() > 2; }))
    throw std::runtime_error("a viewer that was just connected shows no picture");
}

void Desktop::connectAgain() {
  fSession = nullptr;
  fWindow->closeCurrentRobot();
  if (!waitUntil([this] { return fWindow->robots().docks().empty(); }))
    throw std::runtime_error("the robot's dock can't be closed");
  dock();
}

void Desktop::chooseSettings() {
  find<QSlider>(kFrameRateName)->setValue(kFrameRate);
  find<QComboBox>(kResolutionName)->setCurrentIndex(kResolution);
  find<QCheckBox>(kDetection)->setChecked(true);
}

void Desktop::moveSlider() {
  if (auto* slider = find<QSlider>(kOtherSliderName))
    slider->setValue(slider->value() == slider->maximum() ? 0 : slider->value() + 1);
}

void Desktop::takePhoto() {
  if (auto* button = find<QPushButton>(kPhotoName)) button->click();
}

std::string Desktop::wrongSettings() {
  std::string wrong = wrongPanel();
  return wrong.empty() ? wrongRobot() : wrong;
}

std::string Desktop::wrongPanel() const {
  const auto* resolution = find<QComboBox>(kResolutionName);
  const auto* frameRate = find<QSlider>(kFrameRateName);
  const auto* detection = find<QCheckBox>(kDetection);
  if (resolution == nullptr || frameRate == nullptr || detection == nullptr)
    return "there is no panel";
  if (resolution->currentIndex() != kResolution) return "the panel has another resolution";
  if (frameRate->value() != kFrameRate) return "the panel has another frame rate";
  return detection->isChecked() ? "" : "the panel's detection is off";
}

// As the robot has them for this viewer.
std::string Desktop::wrongRobot() {
  try {
    const auto parameter = [this](int id) {
      return call("KyVideoDevice", "getParam", {Ky::KyValue(id)}).asInt();
    };
    if (parameter(Ky::CameraParameter::kResolution) != kResolution)
      return "the robot sends another resolution";
    if (parameter(Ky::CameraParameter::kFrameRate) != kFrameRate)
      return "the robot sends at another frame rate";
    const auto found = call("KyMemory", "getData", {Ky::KyValue(kDetected)});
    return found.size() > 0 ? "" : "the robot detects nothing";
  } catch (const Ky::KyError& error) {
    return std::string("the robot can't be asked: ") + error.what();
  }
}

Ky::KyValue Desktop::call(const std::string& module, const std::string& method,
                          const Ky::KyValue::Array& arguments) {
  const auto broker = fWindow->catalog().forRobots()->interface->broker();
  return fWorker.wait([&] { return broker->call(module, method, arguments); });
}

quint64 Desktop::framesPainted() const {
  return fSession->framesPainted();
}

template <class Kind>
Kind* Desktop::find(const QString& name) const {
  if (fSession->widget() == nullptr) return nullptr;
  for (Kind* child : fSession->widget()->findChildren<Kind*>()) {
    if (child->accessibleName() == name) return child;
    if constexpr (std::is_same_v<Kind, QCheckBox>)
      if (child->text() == name) return child;
  }
  return nullptr;
}

// SPDX-License-Identifier: Apache-2.0
// The viewer's whole widget on a robot in a process of its own, whose scenes stand still: what the
// picture shows depends on the settings alone.
#pragma once

#include <QPushButton>
#include <QSlider>
#include <csignal>
#include <memory>
#include <string>

#include "robot/kyrobot_process.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "viewer/core/module.h"
#include "viewer/settings/videosettings_widget.h"
#include "viewer/view/placement.h"
#include "viewer/view/view_image.h"
#include "viewer/view/widget.h"
#include "zu/os.h"

// GUI thread.
class SettingsTab {
 public:
  explicit SettingsTab(int cameraModel, std::vector<std::string> more = {})
      : robot(optionsWith(cameraModel, std::move(more))),
        broker(robot.connect()),
        module(Ky::KyModule::createModule<Module>(broker)) {
    module->model()->fResolution = 1;
    module->model()->fFps = 30;
    module->askForVIM();
    widget = std::make_unique<Widget>(module, LOOKOUT_ICONS, "127.0.0.1", nullptr);
    module->setGui(widget.get());
    widget->show();
  }
  ~SettingsTab() {
    robot.process().signal(SIGCONT);
    module->setGui(nullptr);
    widget.reset();
    module.reset();
    broker->shutdown();
  }
  SettingsTab(const SettingsTab&) = delete;
  SettingsTab& operator=(const SettingsTab&) = delete;

  VideoSettingsWidget& panel() { return *widget->findChild<VideoSettingsWidget*>(); }
  Model& model() { return *module->model(); }

  QPushButton* button(const QString& name) {
    for (QPushButton* button : widget->findChildren<QPushButton*>())
      if (button->toolTip() == name || button->text() == name) return button;
    return nullptr;
  }
  void play() { button("Play")->click(); }

  // The picture as it is shown, of something that was captured after this call. Null when none
  // comes.
  QImage nextPicture() {
    const std::int64_t now = zu::os::nowMicroseconds();
    if (!waitUntil([&] { return model().fTimestamp > now; })) return {};
    const Placement placement = placementFor(model().fWidth, model().fHeight);
    const QRect place(placement.origin, placement.pictureSize);
    return widget->findChild<ViewImage*>()->grab(place).toImage().convertToFormat(
        QImage::Format_RGB32);
  }

  KyrobotProcess robot;
  boost::shared_ptr<Ky::KyBroker> broker;
  boost::shared_ptr<Module> module;
  std::unique_ptr<Widget> widget;

 private:
  static std::vector<std::string> optionsWith(int cameraModel, std::vector<std::string> more) {
    std::vector<std::string> options = {"--port",         "0",
                                        "--camera",       "0=generated:1700000000",
                                        "--camera",       "1=generated:1700000000",
                                        "--camera-model", std::to_string(cameraModel)};
    options.insert(options.end(), more.begin(), more.end());
    return options;
  }
};

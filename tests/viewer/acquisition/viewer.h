// SPDX-License-Identifier: Apache-2.0
// A viewer's module on a robot of scripted modules, with a widget that only counts.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <vector>

#include "support/log_capture.h"
#include "support/test_robot.h"
#include "viewer/core/gc_interface.h"
#include "viewer/core/module.h"

class CountingGui : public GCInterface {
 public:
  void updateImage() override { ++fUpdates; }
  void updateVideoRecorderView() override {}
  void selectVideoRecorderView() override {}
  void selectVideoSettingView() override {}

  std::atomic<int> fUpdates{0};
};

struct Viewer {
  Viewer() : device(robot.addVideoDevice()), broker(robot.connect()) {
    module = Ky::KyModule::createModule<Module>(broker);
    module->setGui(&gui);
    model = module->model();
    robot.takeCalls();
  }

  // What the camera delivers from now on.
  void setRecord(const Ky::KyValue& record) { device->answer("getImageRemote", record); }
  // Fetches it.
  void show(const Ky::KyValue& record) {
    setRecord(record);
    module->getNext();
  }
  std::uint32_t pixel(int index) const {
    std::uint32_t value = 0;
    std::memcpy(&value, model->fImageData + index * 4, sizeof value);
    return value;
  }

  LogCapture log;
  CountingGui gui;
  TestRobot robot;
  boost::shared_ptr<ScriptedModule> device;
  boost::shared_ptr<Ky::KyBroker> broker;
  boost::shared_ptr<Module> module;
  boost::shared_ptr<Model> model;
};

inline Ky::KyValue pixels(std::size_t count, std::uint8_t byte = 100) {
  return Ky::KyBinary(std::vector<std::uint8_t>(count, byte));
}

// The seven elements that every record has.
inline Ky::KyValue record(const Ky::KyValue& width, const Ky::KyValue& height,
                          const Ky::KyValue& colorSpace, const Ky::KyValue& bytes) {
  return Ky::KyValue::array({width, height, 2, colorSpace, 1331040000, 250000, bytes});
}

// With the camera and, from 12 on, the angles 0.1, 0.2, ...
inline Ky::KyValue longer(Ky::KyValue shorter, std::size_t elements, int camera = 1) {
  if (elements > 7) shorter.push(camera);
  while (shorter.size() < elements) shorter.push(0.1F * static_cast<float>(shorter.size() - 7));
  return shorter;
}

// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/camera.h"

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/pictures/picture.h"

namespace cli {
namespace {

Ky::KyVideoDeviceProxy camerasOf(const RobotConnection& robot, const CameraOptions& options) {
  if (!robot->isModulePresent("KyVideoDevice"))
    throw Ky::KyError(kBrokerName, "",
                      "the robot " + robot->address().toString() +
                          " has no cameras: there is no module KyVideoDevice");
  robot->setPreference("KyVideoDevice.pictures", options.pictures);
  return Ky::KyVideoDeviceProxy(robot.broker());
}

}  // namespace

void addCameraOptions(CLI::App& command, CameraOptions& options) {
  command
      .add_option("--resolution", options.resolution, "0 160x120, 1 320x240, 2 640x480, 3 1280x960")
      ->type_name("N")
      ->check(CLI::Range(0, 3).description(""))
      ->capture_default_str();
  command
      .add_option("--pictures", options.pictures,
                  "How they come: automatic, exact or saving (compressed, for slow links)")
      ->type_name("WORD")
      ->check(CLI::IsMember({"automatic", "exact", "saving"}).description(""))
      ->capture_default_str();
}

CameraSubscription::CameraSubscription(const RobotConnection& robot, const CameraOptions& options)
    : fProxy(camerasOf(robot, options)),
      fName(fProxy.subscribe("", options.resolution, kColorSpace, options.fps)) {
}

CameraSubscription::~CameraSubscription() {
  try {
    fProxy.unsubscribe(fName);
  } catch (const Ky::KyError&) {
    // A robot that is gone has forgotten it.
  }
}

}  // namespace cli

// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/pictures/camera.h"
#include "cli/pictures/image_file.h"
#include "cli/pictures/output_file.h"

namespace cli {
namespace {

struct Options {
  RobotOptions robot;
  CameraOptions camera{.pictures = "exact"};
  std::string file;
};

Picture takePicture(const Options& options) {
  const RobotConnection robot(options.robot);
  Picture picture = pictureOf(CameraSubscription(robot, options.camera).newest());
  requirePixels(picture);
  return picture;
}

void image(const Options& options, std::ostream& out) {
  requireImageName(options.file);
  requireWritable(options.file);
  const Picture picture = takePicture(options);
  writeImage(options.file, picture);
  if (options.robot.json)
    out << toJson(Ky::KyValue::array({options.file, picture.width, picture.height})) << "\n";
  else
    out << options.file << ": " << picture.width << " x " << picture.height << "\n";
}

}  // namespace

void addImageCommand(CLI::App& app, std::ostream& out) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      addRobotCommand(app, "image", "Save what the robot sees as PNG or JPEG", options->robot);
  command.callback([options, &out] { image(*options, out); });
  command.add_option("FILE", options->file, "Where to, FILE.png or FILE.jpg")->required();
  addCameraOptions(command, options->camera);
}

}  // namespace cli

// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/ky_command.h"
#include "cli/robot_connection.h"
#include "ky/memory_proxy.h"

namespace cli {
namespace {

using Ky::KyValue;

constexpr const char* kViewer = "Periscope";
constexpr std::size_t kFigureSize = 9;
constexpr const char* kFigure = "[x, y, diameter, thickness, shape, red, green, blue, \"text\"]";

struct Options {
  RobotOptions robot;
  std::string key;
  std::string figures;
};

bool isFigure(const KyValue& figure) {
  if (!figure.isArray() || figure.size() != kFigureSize) return false;
  const auto isNumber = [](const KyValue& value) { return value.isInt() || value.isFloat(); };
  for (std::size_t i = 0; i < 3; ++i)
    if (!isNumber(figure[i])) return false;
  for (std::size_t i = 3; i + 1 < kFigureSize; ++i)
    if (!figure[i].isInt()) return false;
  return figure[kFigureSize - 1].isString();
}

// The viewer would only write a line into its log.
void requireFigures(const KyValue& figures) {
  if (!figures.isArray()) throw WrongUse("the figures are an array of " + std::string(kFigure));
  for (const KyValue& figure : figures.asArray())
    if (!isFigure(figure))
      throw WrongUse(toJson(figure) + " is no figure: a figure is " + kFigure +
                     ", from thickness to blue whole numbers");
}

void draw(const Options& options) {
  const KyValue figures = parseJson(options.figures);
  requireFigures(figures);
  const RobotConnection robot(options.robot);
  Ky::KyMemoryProxy(robot.broker()).insertData(options.key, figures);
  if (!robot->isModulePresent(kViewer))
    throw Ky::KyError(
        "the figures are written, but no viewer is connected to the robot to draw "
        "them: open one and draw again");
  robot->call(kViewer, "subscribeLog", {options.key});
}

}  // namespace

void addDrawCommand(CLI::App& app) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      addRobotCommand(app, "draw", "Draw figures over the viewer's picture", options->robot);
  command.callback([options] { draw(*options); });
  command.add_option("KEY", options->key, "Where in the robot's memory they stand")->required();
  command.add_option("FIGURES", options->figures, "JSON: an array of figures, [] for none")
      ->required();
  command.footer(std::string("\nA figure is ") + kFigure +
                 R"(:
x and y from 0 to 1, the diameter in pixels, shape 0 circle, 1 cross, 2 square.
  ky draw MyFigures '[[0.5, 0.7, 20, 2, 0, 0, 0, 0, "this is a test"]]')");
}

}  // namespace cli

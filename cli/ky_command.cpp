// SPDX-License-Identifier: Apache-2.0
#include "cli/ky_command.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "ky/error.h"
#include "zu/log.h"

namespace cli {
namespace {

constexpr const char* kExamples = R"(
Examples:
  ky list
      The modules of the robot on this computer; "ky list KyMemory" its methods.
  ky ping --robot 192.168.1.20
      Whether a robot answers, and how fast.
  ky call KyVideoDevice.getParam 0
      Calls a method; every argument is JSON.
  ky memory set greeting '["hello", 3, 0.5]'
      Writes a value into the robot's memory; get, watch, list and remove are there too.
  ky draw MyFigures '[[0.5, 0.7, 20, 2, 0, 0, 0, 0, "this is a test"]]'
      Draws over the picture of the viewer.
  ky image front.png
      Saves what the robot sees; "ky watch front.mkv --seconds 10" films it.
  ky keys make
      Makes this computer's keys, for robots that others can reach.

docs/howto/ tells more.)";

int runCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
  zu::log::setConsoleLevel(zu::log::Level::error);
  CLI::App app("A robot's modules, memory and pictures and the keys to it, from a shell.", "ky");
  app.set_version_flag("--version", std::string("ky ") + KY_CLI_VERSION);
  app.require_subcommand(0, 1);
  addKeysCommands(app, out);
  addRobotCommands(app, out);
  addMemoryCommands(app, out);
  addDrawCommand(app);
  addImageCommand(app, out);
  addWatchCommand(app, out);
  app.footer(kExamples);  // after the commands, which would inherit it
  try {
    app.parse(argc, argv);
    if (app.get_subcommands().empty()) throw WrongUse("a command is missing, such as 'ky list'");
    return 0;
  } catch (const CLI::Success& success) {  // --help, --version
    return app.exit(success, out, err);
  } catch (const CLI::ParseError& error) {
    err << "ky: " << error.what() << "\nTry 'ky --help'.\n";
    return 2;
  } catch (const WrongUse& error) {
    err << "ky: " << error.what() << "\nTry 'ky --help'.\n";
    return 2;
  } catch (const Ky::KyError& error) {
    err << "ky: " << (error.module() == kBrokerName ? error.what() : error.toString()) << "\n";
    return 1;
  }
}

// Empty when all that was written to `out` has arrived.
std::string problemOf(std::ostream& out) {
  errno = 0;
  if (out.flush()) return {};
  // What was written earlier and failed then has left no reason.
  return errno != 0 ? std::strerror(errno) : "perhaps the disk is full";
}

}  // namespace

int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
  const int code = runCommand(argc, argv, out, err);
  const std::string problem = problemOf(out);
  if (problem.empty()) return code;
  err << "ky: can't write the output: " << problem << "\n";
  return code != 0 ? code : 1;
}

}  // namespace cli

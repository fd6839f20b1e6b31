// SPDX-License-Identifier: Apache-2.0
#include "cli/robot_connection.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>

#include "cli/commands.h"
#include "cli/ky_command.h"

namespace cli {
namespace {

// With keys when they are given, and beyond this computer when there are any: as Lookout does.
std::optional<std::filesystem::path> keysFor(const Ky::KyAddress& robot,
                                             const RobotOptions& options) {
  if (options.insecure) return std::nullopt;
  if (!options.keys.empty()) return options.keys;
  const Ky::KyKeyStore own(Ky::KyKeyStore::defaultFolder());
  if (robot.isLoopback() || !own.exists()) return std::nullopt;
  return own.folder();
}

// The runtime refuses it too, but does not know what this command can do about it.
void requireKnown(const Ky::KyAddress& robot, const Ky::KyKeyStore& keys) {
  if (!keys.exists() || !keys.known(robot.toString()).empty()) return;
  throw Ky::KyError(kBrokerName, "",
                    "the key of the robot " + robot.toString() +
                        " is unknown: make it known with 'ky keys trust', or connect with "
                        "--insecure if the robot was started with it");
}

Ky::KyBrokerOptions reach(const RobotOptions& options) {
  Ky::KyBrokerOptions result;
  result.name = kBrokerName;
  try {
    result.parent = Ky::KyAddress::parse(options.robot);
  } catch (const Ky::KyError& error) {
    throw WrongUse(std::string("--robot: ") + error.what());
  }
  result.keys = keysFor(*result.parent, options);
  if (result.keys) requireKnown(*result.parent, Ky::KyKeyStore(*result.keys));
  return result;
}

}  // namespace

CLI::App& addRobotCommand(CLI::App& app, const std::string& name, const std::string& description,
                          RobotOptions& options) {
  CLI::App& command = *app.add_subcommand(name, description);
  command.add_option("--robot", options.robot, "The robot")
      ->type_name("HOST:PORT")
      ->capture_default_str();
  CLI::Option* keys =
      command.add_option("--keys", options.keys, "Folder of the keys")->type_name("DIR");
  command
      .add_flag("--insecure", options.insecure,
                "Connect without encryption, to a robot that was started with --insecure")
      ->excludes(keys);
  command.add_flag("--json", options.json, "Print one line of JSON, for scripts");
  return command;
}

RobotConnection::RobotConnection(const RobotOptions& options)
    : fBroker(Ky::KyBroker::create(reach(options))) {
}

}  // namespace cli

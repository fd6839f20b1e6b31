// SPDX-License-Identifier: Apache-2.0
#include "cli/robot_connection.h"

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/ky_command.h"

namespace cli {
namespace {

// With keys when they are given, and beyond this computer when there are any: as Lookout does.
Ky::KyBrokerOptions reach(const RobotOptions& options) {
  Ky::KyBrokerOptions result;
  result.name = kBrokerName;
  try {
    result.parent = Ky::KyAddress::parse(options.robot);
  } catch (const Ky::KyError& error) {
    throw WrongUse(std::string("--robot: ") + error.what());
  }
  if (!options.keys.empty()) {
    result.keys = options.keys;
  } else if (const Ky::KyKeyStore own(Ky::KyKeyStore::defaultFolder());
             !result.parent->isLoopback() && own.exists()) {
    result.keys = own.folder();
  }
  return result;
}

}  // namespace

CLI::App& addRobotCommand(CLI::App& app, const std::string& name, const std::string& description,
                          RobotOptions& options) {
  CLI::App& command = *app.add_subcommand(name, description);
  command.add_option("--robot", options.robot, "The robot")
      ->type_name("HOST:PORT")
      ->capture_default_str();
  command.add_option("--keys", options.keys, "Folder of the keys")->type_name("DIR");
  command.add_flag("--json", options.json, "Print one line of JSON, for scripts");
  return command;
}

RobotConnection::RobotConnection(const RobotOptions& options)
    : fBroker(Ky::KyBroker::create(reach(options))) {
}

}  // namespace cli

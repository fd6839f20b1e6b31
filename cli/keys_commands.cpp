// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "cli/ky_command.h"
#include "ky/keys.h"

namespace cli {
namespace {

struct Options {
  std::string folder = Ky::KyKeyStore::defaultFolder().string();
  std::string name;
  std::string key;

  Ky::KyKeyStore store() const { return Ky::KyKeyStore(folder); }
};

CLI::App& addCommand(CLI::App& keys, const std::string& name, const std::string& description,
                     const std::shared_ptr<Options>& options) {
  CLI::App& command = *keys.add_subcommand(name, description);
  command.add_option("--keys", options->folder, "Folder of the keys")
      ->type_name("DIR")
      ->capture_default_str();
  return command;
}

}  // namespace

void addKeysCommands(CLI::App& app, std::ostream& out) {
  CLI::App& keys = *app.add_subcommand("keys", "Make, show and trust keys");
  keys.require_subcommand(0, 1);
  keys.callback([&keys] {
    if (keys.get_subcommands().empty())
      throw WrongUse("what about the keys? 'ky keys make', 'show' or 'trust'");
  });
  const auto options = std::make_shared<Options>();

  addCommand(keys, "make", "Make this computer's keys", options).callback([options, &out] {
    out << options->store().create().publicKey << "\n";
  });

  addCommand(keys, "show", "Print this computer's public key", options).callback([options, &out] {
    out << options->store().own().publicKey << "\n";
  });

  CLI::App& trust = addCommand(keys, "trust", "Make a peer's public key known", options);
  trust
      .add_option("NAME", options->name,
                  "Whose key it is: a robot's HOST:PORT, or any name for a desktop")
      ->required();
  trust.add_option("KEY", options->key, "The key, as 'ky keys show' prints it there")->required();
  trust.callback([options, &out] {
    options->store().add(options->name, options->key);
    out << "The key of " << options->name << " is known now.\n";
  });
}

}  // namespace cli

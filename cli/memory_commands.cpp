// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/ky_command.h"
#include "cli/memory_watch.h"
#include "cli/robot_connection.h"
#include "ky/memory_proxy.h"

namespace cli {
namespace {

struct Options {
  RobotOptions robot;
  std::string key;
  std::string value;
  WatchOptions watch;
};

// The robot's memory, for one command.
struct Memory {
  explicit Memory(const Options& options) : robot(options.robot), proxy(robot.broker()) {}
  RobotConnection robot;
  Ky::KyMemoryProxy proxy;
};

void listKeys(const Options& options, std::ostream& out) {
  Memory memory(options);
  Ky::KyValue::Array keys;
  for (const std::string& key : memory.proxy.getDataList(options.key)) {
    keys.push_back(key);
    if (!options.robot.json) out << key << "\n";
  }
  if (options.robot.json) out << toJson(keys) << "\n";
}

void get(const Options& options, std::ostream& out) {
  Memory memory(options);
  out << toJson(memory.proxy.getData(options.key)) << "\n";
}

void set(const Options& options, std::ostream&) {
  const Ky::KyValue value = parseJson(options.value);
  Memory(options).proxy.insertData(options.key, value);
}

void remove(const Options& options, std::ostream&) {
  Memory(options).proxy.removeData(options.key);
}

void watch(const Options& options, std::ostream& out) {
  WatchOptions watched = options.watch;
  watched.json = options.robot.json;
  Memory memory(options);
  watchMemory(memory.proxy, watched, out);
}

}  // namespace

void addMemoryCommands(CLI::App& app, std::ostream& out) {
  CLI::App& memory = *app.add_subcommand("memory", "Read and write a robot's memory");
  memory.require_subcommand(0, 1);
  memory.callback([&memory] {
    if (memory.get_subcommands().empty())
      throw WrongUse("what about the memory? 'ky memory list', 'get', 'set', 'remove' or 'watch'");
  });
  const auto options = std::make_shared<Options>();
  const auto add = [&](const char* name, const char* description, auto run) -> CLI::App& {
    CLI::App& command = addRobotCommand(memory, name, description, options->robot);
    command.callback([options, &out, run] { run(*options, out); });
    return command;
  };
  const auto addKey = [&](CLI::App& command) {
    command.add_option("KEY", options->key, "The name of the value")->required();
  };

  add("list", "List the keys", listKeys)
      .add_option("PREFIX", options->key, "Only keys that begin so");
  addKey(add("get", "Print a value as JSON", get));
  addKey(add("remove", "Forget a value", remove));
  CLI::App& setter = add("set", "Write a value", set);
  addKey(setter);
  setter.add_option("JSON", options->value, "The value")->required();
  CLI::App& watcher = add("watch", "Print values whenever they change, until Ctrl-C", watch);
  watcher.add_option("KEY", options->watch.keys, "The names of the values")->required();
  watcher
      .add_option("--every", options->watch.every,
                  "Look every so many seconds, instead of being told at once where the robot can")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 3600.0).description(""));
  watcher.add_option("--count", options->watch.count, "End after so many values; 0: never")
      ->type_name("N")
      ->check(CLI::NonNegativeNumber.description(""))
      ->capture_default_str();
}

}  // namespace cli

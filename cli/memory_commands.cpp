// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/ky_command.h"
#include "cli/robot_connection.h"
#include "ky/memory_proxy.h"

namespace cli {
namespace {

struct Options {
  RobotOptions robot;
  std::string key;
  std::string value;
  double every = 0.1;  // seconds
  int count = 0;       // values to print; 0: without end
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

// Nothing while nobody has written the key.
std::optional<Ky::KyValue> find(Ky::KyMemoryProxy& memory, const std::string& key) {
  try {
    return memory.getData(key);
  } catch (const Ky::KyError&) {
    const auto keys = memory.getDataList(key);
    if (std::binary_search(keys.begin(), keys.end(), key)) throw;
    return std::nullopt;
  }
}

void watch(const Options& options, std::ostream& out) {
  Memory memory(options);
  std::optional<Ky::KyValue> last;
  const auto pause = std::chrono::milliseconds(std::max(1, static_cast<int>(options.every * 1000)));
  for (int printed = 0; out && (options.count == 0 || printed < options.count);) {
    const auto value = find(memory.proxy, options.key);
    if (value && value != last) {
      out << toJson(*value) << std::endl;
      ++printed;
    } else {
      std::this_thread::sleep_for(pause);
    }
    last = value;
  }
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
  CLI::App& watcher = add("watch", "Print a value whenever it changes, until Ctrl-C", watch);
  addKey(watcher);
  watcher.add_option("--every", options->every, "Seconds between two looks")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 3600.0).description(""))
      ->capture_default_str();
  watcher.add_option("--count", options->count, "End after so many values; 0: never")
      ->type_name("N")
      ->check(CLI::NonNegativeNumber.description(""))
      ->capture_default_str();
}

}  // namespace cli

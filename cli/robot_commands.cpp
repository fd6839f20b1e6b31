// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/ky_command.h"
#include "cli/robot_connection.h"

namespace cli {
namespace {

struct Options {
  RobotOptions robot;
  std::string module;
  std::string target;
  std::vector<std::string> arguments;
};

void ping(const Options& options, std::ostream& out) {
  const RobotConnection robot(options.robot);
  const std::string address = robot->address().toString();
  const auto start = std::chrono::steady_clock::now();
  robot->moduleNames();
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  if (options.robot.json)
    out << toJson(Ky::KyValue::Array{address, time.count()}) << "\n";
  else
    out << address << " answered in " << time.count() << " ms\n";
}

// Name and description.
using Described = std::pair<std::string, std::string>;

void print(const std::vector<Described>& rows, bool json, std::ostream& out) {
  Ky::KyValue::Array array;
  std::size_t width = 0;
  for (const auto& [name, description] : rows) {
    array.push_back(Ky::KyValue::Array{name, description});
    width = std::max(width, name.size());
  }
  if (json) {
    out << toJson(array) << "\n";
    return;
  }
  for (const auto& [name, description] : rows) {
    // What is written over several lines stands under its own beginning.
    std::string text = description;
    for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1))
      text.insert(at + 1, width + 2, ' ');
    out << name << std::string(width + 2 - name.size(), ' ') << text << "\n";
  }
}

// "insertData(key: string, value: value)", "getData(key: string) -> value"
std::string signature(const Ky::KyValue& help) {
  std::string text = help[0].asString() + "(";
  for (const Ky::KyValue& parameter : help[2].asArray())
    text +=
        (text.back() == '(' ? "" : ", ") + parameter[0].asString() + ": " + parameter[1].asString();
  const std::string& result = help[3][1].asString();
  return text + ")" + (result == "nothing" ? "" : " -> " + result);
}

std::vector<Described> methodsOf(const RobotConnection& robot, const std::string& module) {
  std::vector<Described> rows;
  const Ky::KyValue names = robot->call(module, "getMethodList", {});
  for (const Ky::KyValue& name : names.asArray()) {
    const Ky::KyValue help = robot->call(module, "getMethodHelp", {name});
    rows.emplace_back(signature(help), help[1].asString());
  }
  return rows;
}

std::vector<Described> modulesOf(const RobotConnection& robot) {
  std::vector<Described> rows;
  for (const std::string& name : robot->moduleNames()) {
    std::string description;
    try {
      description = robot->call(name, "getModuleHelp", {})[0].asString();
    } catch (const Ky::KyError& error) {
      description = std::string("(says nothing of itself: ") + error.what() + ")";
    }
    rows.emplace_back(name, description);
  }
  return rows;
}

void list(const Options& options, std::ostream& out) {
  const RobotConnection robot(options.robot);
  print(options.module.empty() ? modulesOf(robot) : methodsOf(robot, options.module),
        options.robot.json, out);
}

void call(const Options& options, std::ostream& out) {
  const auto dot = options.target.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == options.target.size())
    throw WrongUse("'" + options.target + "' is not MODULE.METHOD");
  Ky::KyValue::Array arguments;
  arguments.reserve(options.arguments.size());
  for (const std::string& text : options.arguments) arguments.push_back(parseJson(text));
  const RobotConnection robot(options.robot);
  out << toJson(
             robot->call(options.target.substr(0, dot), options.target.substr(dot + 1), arguments))
      << "\n";
}

}  // namespace

void addRobotCommands(CLI::App& app, std::ostream& out) {
  const auto options = std::make_shared<Options>();
  const auto add = [&](const char* name, const char* description, auto run) -> CLI::App& {
    CLI::App& command = addRobotCommand(app, name, description, options->robot);
    command.callback([options, &out, run] { run(*options, out); });
    return command;
  };

  add("ping", "Ask a robot for a sign of life", ping);
  add("list", "List a robot's modules, or the methods of one", list)
      .add_option("MODULE", options->module, "Whose methods to list");
  CLI::App& caller = add("call", "Call a method of a module and print its result as JSON", call);
  caller.add_option("MODULE.METHOD", options->target, "What to call")->required();
  // Not as an option of several values: those take "[1, 2]" apart.
  caller.allow_extras();
  caller.parse_complete_callback([options, &caller] { options->arguments = caller.remaining(); });
  caller.footer("\nAll further words are arguments: null, true, 7, 0.5, '\"text\"', '[1, 2]'.");
}

}  // namespace cli

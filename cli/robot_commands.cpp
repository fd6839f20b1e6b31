#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/ky_command.h"
#include "ky/broker.h"

namespace cli {
namespace {

struct Options {
  std::string robot = Ky::KyAddress{}.toString();
  std::string keys;
  std::string target;
  std::vector<std::string> arguments;
};

// A connection to the robot that ends with the command.
class Connection {
 public:
  explicit Connection(const Options& options) : fBroker(Ky::KyBroker::create(reach(options))) {}
  ~Connection() { fBroker->shutdown(); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  Ky::KyBroker* operator->() const { return fBroker.get(); }

 private:
  // With keys when they are given, and beyond this computer when there are any: as Lookout does.
  static Ky::KyBrokerOptions reach(const Options& options) {
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

  boost::shared_ptr<Ky::KyBroker> fBroker;
};

void ping(const Options& options, std::ostream& out) {
  const Connection robot(options);
  const auto start = std::chrono::steady_clock::now();
  robot->moduleNames();
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  out << robot->address().toString() << " answered in " << time.count() << " ms\n";
}

void list(const Options& options, std::ostream& out) {
  const Connection robot(options);
  for (const std::string& name : robot->moduleNames()) out << name << "\n";
}

void call(const Options& options, std::ostream& out) {
  const auto dot = options.target.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == options.target.size())
    throw WrongUse("'" + options.target + "' is not MODULE.METHOD");
  Ky::KyValue::Array arguments;
  arguments.reserve(options.arguments.size());
  for (const std::string& text : options.arguments) arguments.push_back(parseJson(text));
  const Connection robot(options);
  out << robot->call(options.target.substr(0, dot), options.target.substr(dot + 1), arguments)
             .toString()
      << "\n";
}

}  // namespace

void addRobotCommands(CLI::App& app, std::ostream& out) {
  const auto options = std::make_shared<Options>();
  const auto add = [&](const char* name, const char* description, auto run) -> CLI::App& {
    CLI::App& command = *app.add_subcommand(name, description);
    command.add_option("--robot", options->robot, "The robot")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    command.add_option("--keys", options->keys, "Folder of the keys")->type_name("DIR");
    command.callback([options, &out, run] { run(*options, out); });
    return command;
  };

  add("ping", "Ask a robot for a sign of life", ping);
  add("list", "List a robot's modules", list);
  CLI::App& caller = add("call", "Call a method of a module and print its result", call);
  caller.add_option("MODULE.METHOD", options->target, "What to call")->required();
  // Not as an option of several values: those take "[1, 2]" apart.
  caller.allow_extras();
  caller.parse_complete_callback([options, &caller] { options->arguments = caller.remaining(); });
  caller.footer("\nAll further words are arguments: null, true, 7, 0.5, '\"text\"', '[1, 2]'.");
}

}  // namespace cli

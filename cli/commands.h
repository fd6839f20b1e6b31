// The commands of `ky`. Each adds its subcommands, which write their results to `out` and run while
// the command line is parsed; they throw WrongUse and Ky::KyError.
#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace cli {

// Under which name the command meets a robot; its errors come without it.
constexpr const char* kBrokerName = "ky";

// keys make, keys show, keys trust NAME KEY
void addKeysCommands(CLI::App& app, std::ostream& out);

// ping, list, call MODULE.METHOD [JSON...]
void addRobotCommands(CLI::App& app, std::ostream& out);

}  // namespace cli

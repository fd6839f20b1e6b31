// SPDX-License-Identifier: Apache-2.0
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

// ping, list [MODULE], call MODULE.METHOD [JSON...]
void addRobotCommands(CLI::App& app, std::ostream& out);

// memory list [PREFIX], memory get KEY, memory set KEY JSON, memory remove KEY, memory watch KEY...
void addMemoryCommands(CLI::App& app, std::ostream& out);

// image FILE
void addImageCommand(CLI::App& app, std::ostream& out);

// watch FILE
void addWatchCommand(CLI::App& app, std::ostream& out);

// draw KEY FIGURES
void addDrawCommand(CLI::App& app);

}  // namespace cli

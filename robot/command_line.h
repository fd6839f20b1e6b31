// SPDX-License-Identifier: Apache-2.0
// The command line of kyrobot.
#pragma once

#include <iosfwd>
#include <optional>

#include "robot/options.h"

namespace robot {

// What the command line says, or nothing when there is nothing to start: `exitCode` is then 0
// after --help and --version, 2 after a wrong option, which has been explained on `err`.
std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out,
                                    std::ostream& err, int& exitCode);

}  // namespace robot

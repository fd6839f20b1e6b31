// SPDX-License-Identifier: Apache-2.0
// The command `ky`: keys, and a robot's modules, from a shell.
#pragma once

#include <iosfwd>
#include <stdexcept>

namespace cli {

// What is wrong with the command line itself, found while a command runs.
class WrongUse : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Runs one command line. Results go to `out`, what is wrong to `err`. Returns the exit code: 0, 1
// when the command failed or `out` took not all of its results, 2 when the command line is wrong.
int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace cli

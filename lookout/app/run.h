// SPDX-License-Identifier: Apache-2.0
// The program behind main().
#pragma once

namespace Lookout {

// Runs the program and returns its exit code: 0, 1 (see ScriptedRun), or 2 for a wrong command
// line.
int run(int argc, char** argv);

}  // namespace Lookout

// How every benchmark runs and says what it found.
//
// A line "target<TAB>what<TAB>value<TAB>at most|at least<TAB>bound<TAB>reached|MISSED" on standard
// output is one row of the table that scripts/bench prints.
#pragma once

#include <map>
#include <string>

namespace bench {

// Runs all registered benchmarks, in turns so that whatever else the machine does meets all of them
// alike. The median of each under its name: processor time, or elapsed time
// for those that UseRealTime(), in the unit of each. Options of the command line are Google
// Benchmark's. Ends the program with 2 for a wrong one.
std::map<std::string, double> medians(int argc, char** argv);

// How much memory this process has in use now.
double residentMegabytes();

void atMost(const std::string& what, double value, double bound);
void atLeast(const std::string& what, double value, double bound);

}  // namespace bench

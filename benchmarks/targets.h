// SPDX-License-Identifier: Apache-2.0
// How every benchmark runs and says what it found.
//
// A line "target<TAB>what<TAB>value<TAB>at most|at least<TAB>bound<TAB>reached|MISSED" on standard
// output is one row of the table that scripts/bench prints.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>

namespace bench {

// Runs all registered benchmarks, in turns so that whatever else the machine does meets all of them
// alike. The median of each under its name: processor time, or elapsed time
// for those that UseRealTime(), in the unit of each. Options of the command line are Google
// Benchmark's. Ends the program with 2 for a wrong one.
std::map<std::string, double> medians(int argc, char** argv);

// How much memory this process has in use now.
double residentMegabytes();

// Registers one that measures for itself, in seconds of its own choice: it runs once.
template <class Measure>
void once(const std::string& name, Measure measure) {
  benchmark::RegisterBenchmark(name.c_str(), std::move(measure))
      ->Iterations(1)
      ->Unit(benchmark::kSecond)
      ->UseRealTime();
}
// Runs what once() has registered. Returns the exit code: 2 for a wrong command line.
int runOnce(int argc, char** argv);

void atMost(const std::string& what, double value, double bound);
void atLeast(const std::string& what, double value, double bound);

}  // namespace bench

// SPDX-License-Identifier: Apache-2.0
#include "targets.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

namespace bench {
namespace {

// Prints like Google Benchmark's own reporter, and keeps the medians.
class MedianKeeper : public benchmark::ConsoleReporter {
 public:
  MedianKeeper() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.aggregate_name == "median")
        fMedians[run.run_name.function_name] = run.run_name.time_type == "real_time"
                                                   ? run.GetAdjustedRealTime()
                                                   : run.GetAdjustedCPUTime();
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> fMedians;
};

void report(const std::string& what, double value, const char* relation, double bound,
            bool isReached) {
  std::printf("target\t%s\t%.2f\t%s\t%.2f\t%s\n", what.c_str(), value, relation, bound,
              isReached ? "reached" : "MISSED");
  std::fflush(stdout);
}

}  // namespace

std::map<std::string, double> medians(int argc, char** argv) {
  // Ours first: what the command line says counts.
  std::vector<std::string> words = {argv[0], "--benchmark_enable_random_interleaving=true",
                                    "--benchmark_repetitions=25", "--benchmark_min_time=0.04",
                                    "--benchmark_display_aggregates_only=true"};
  words.insert(words.end(), argv + 1, argv + argc);
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  auto count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) std::exit(2);
  MedianKeeper keeper;
  benchmark::RunSpecifiedBenchmarks(&keeper);
  benchmark::Shutdown();
  return keeper.fMedians;
}

int runOnce(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

double residentMegabytes() {
  std::ifstream pages("/proc/self/statm");
  double size = 0, resident = 0;
  pages >> size >> resident;
  return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

void atMost(const std::string& what, double value, double bound) {
  report(what, value, "at most", bound, value <= bound);
}

void atLeast(const std::string& what, double value, double bound) {
  report(what, value, "at least", bound, value >= bound);
}

}  // namespace bench

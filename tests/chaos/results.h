// SPDX-License-Identifier: Apache-2.0
// What became of the faults, and the table of it.
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

#include "footprint.h"

struct RoundResult {
  std::string fault;
  std::chrono::milliseconds recovery{0};  // from the fault's end to a new picture
  std::chrono::milliseconds settled{0};   // from there until all settings are as before
  std::chrono::milliseconds stall{0};     // the window's longest, from the fault's begin
};

// How a program was once it had warmed up, and at the end.
struct Growth {
  std::string program;
  Footprint before;
  Footprint after;
};

struct Results {
  std::vector<RoundResult> rounds;
  std::vector<Growth> growths;
  int broken = 0;  // promises
};

// Lines for programs; those of several runs may follow each other. read() adds, and throws
// std::runtime_error for what is no result.
void write(std::ostream& out, const Results& results);
void read(std::istream& in, Results& results);

// For people.
void printTable(std::ostream& out, const Results& results);

// SPDX-License-Identifier: Apache-2.0
// What the chaos program can be told.
#pragma once

#include <QStringList>
#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

struct Fault;

struct Options {
  std::uint32_t seed = 1;
  int faults = 20;
  std::chrono::minutes most{0};             // 0: as long as it takes
  std::chrono::milliseconds longest{5000};  // of one fault
  double patience = 1;                      // by which every limit of time is multiplied
  std::vector<const Fault*> only;           // empty: all
  bool film = false;                        // in all rounds, not only in some
  bool verbose = false;
  std::string results;            // a file for the results
  std::vector<std::string> join;  // print the table of these files, and do nothing else
  std::string answer;             // to be printed instead of doing anything
};

struct OptionsError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Throws OptionsError that says what is wrong.
Options parseOptions(const QStringList& arguments);

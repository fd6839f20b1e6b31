// SPDX-License-Identifier: Apache-2.0
#include "results.h"

#include <algorithm>
#include <iomanip>
#include <istream>
#include <map>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace {

using std::chrono::milliseconds;

std::istream& operator>>(std::istream& in, milliseconds& time) {
  milliseconds::rep count = 0;
  in >> count;
  time = milliseconds(count);
  return in;
}

std::ostream& operator<<(std::ostream& out, const Footprint& footprint) {
  return out << footprint.kilobytes << ' ' << footprint.descriptors << ' ' << footprint.threads;
}

std::istream& operator>>(std::istream& in, Footprint& footprint) {
  return in >> footprint.kilobytes >> footprint.descriptors >> footprint.threads;
}

bool readLine(std::istream& in, Results& results) {
  std::string kind;
  in >> kind;
  if (kind == "round") {
    RoundResult& round = results.rounds.emplace_back();
    in >> round.fault >> round.recovery >> round.settled >> round.stall;
  } else if (kind == "growth") {
    Growth& growth = results.growths.emplace_back();
    in >> growth.program >> growth.before >> growth.after;
  } else if (kind == "broken") {
    int broken = 0;
    in >> broken;
    results.broken += broken;
  } else {
    return false;
  }
  return !in.fail();
}

// Of times in order: the one that so many percent don't exceed.
milliseconds percentile(const std::vector<milliseconds>& times, std::size_t percent) {
  return times.at((times.size() * percent + 99) / 100 - 1);
}

struct Row {
  std::vector<milliseconds> recoveries, settled, stalls;

  void add(const RoundResult& round) {
    recoveries.push_back(round.recovery);
    settled.push_back(round.settled);
    stalls.push_back(round.stall);
  }
  void sort() {
    for (auto* times : {&recoveries, &settled, &stalls}) std::sort(times->begin(), times->end());
  }
};

std::string seconds(milliseconds time) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(2) << static_cast<double>(time.count()) / 1000;
  return text.str();
}

void printRow(std::ostream& out, const std::string& name, Row& row) {
  row.sort();
  out << std::left << std::setw(11) << name << std::right << std::setw(7) << row.recoveries.size();
  for (const std::size_t percent : {50, 95, 100})
    out << std::setw(9) << seconds(percentile(row.recoveries, percent));
  out << std::setw(10) << seconds(row.settled.back()) << std::setw(9) << seconds(row.stalls.back())
      << '\n';
}

// Of all runs of a program, that with the largest growth in this respect.
void printChange(std::ostream& out, const std::vector<Growth>& growths, const char* what,
                 long Footprint::*figure, long unit) {
  const auto change = [&](const Growth& growth) {
    return growth.after.*figure - growth.before.*figure;
  };
  const auto most = std::max_element(
      growths.begin(), growths.end(),
      [&](const Growth& one, const Growth& other) { return change(one) < change(other); });
  out << "  " << what << ' ' << most->before.*figure / unit << " -> " << most->after.*figure / unit;
}

void printGrowths(std::ostream& out, const std::vector<Growth>& all) {
  std::map<std::string, std::vector<Growth>> programs;
  for (const Growth& growth : all) programs[growth.program].push_back(growth);
  for (const auto& [program, growths] : programs) {
    out << std::left << std::setw(7) << program << std::right;
    printChange(out, growths, "memory (MiB)", &Footprint::kilobytes, 1024);
    printChange(out, growths, "descriptors", &Footprint::descriptors, 1);
    printChange(out, growths, "threads", &Footprint::threads, 1);
    out << "  (worst of " << growths.size() << ")\n";
  }
}

}  // namespace

void write(std::ostream& out, const Results& results) {
  for (const RoundResult& round : results.rounds)
    out << "round " << round.fault << ' ' << round.recovery.count() << ' ' << round.settled.count()
        << ' ' << round.stall.count() << '\n';
  for (const Growth& growth : results.growths)
    out << "growth " << growth.program << ' ' << growth.before << ' ' << growth.after << '\n';
  out << "broken " << results.broken << '\n';
}

void read(std::istream& in, Results& results) {
  for (std::string text; std::getline(in, text);) {
    std::istringstream line(text);
    if (!readLine(line, results)) throw std::runtime_error("this is no result: " + text);
  }
}

void printTable(std::ostream& out, const Results& results) {
  if (results.rounds.empty()) {
    out << "There were no faults.\n";
    return;
  }
  std::map<std::string, Row> rows;
  Row all;
  for (const RoundResult& round : results.rounds) {
    rows[round.fault].add(round);
    all.add(round);
  }
  out << "             picture again after (s)       settings   stall\n"
         "fault       count   median     95 %    worst     worst    worst\n";
  for (auto& [name, row] : rows) printRow(out, name, row);
  printRow(out, "all", all);
  out << '\n';
  printGrowths(out, results.growths);
  out << "broken promises: " << results.broken << '\n';
}

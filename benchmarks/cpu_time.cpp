// SPDX-License-Identifier: Apache-2.0
#include "cpu_time.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace bench {
namespace {

constexpr const char* kOwnThreads = "/proc/self/task";

std::set<pid_t> threads() {
  std::set<pid_t> all;
  for (const auto& entry : std::filesystem::directory_iterator(kOwnThreads))
    all.insert(std::stoi(entry.path().filename()));
  return all;
}

// Of a process's or thread's folder under /proc.
double secondsIn(const std::string& folder) {
  std::ifstream file(folder + "/stat");
  std::string text{std::istreambuf_iterator<char>(file), {}};
  const auto name = text.rfind(')');
  if (name == std::string::npos) throw std::runtime_error(folder + " is gone");
  std::istringstream fields(text.substr(name + 1));
  std::string skipped;
  for (int i = 0; i < 11; ++i) fields >> skipped;
  double user = 0, system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace

std::set<pid_t> threadsOf(const std::function<void()>& make) {
  const std::set<pid_t> before = threads();
  make();
  std::set<pid_t> made = threads();
  std::erase_if(made, [&](pid_t thread) { return before.contains(thread); });
  return made;
}

CpuTime::CpuTime(pid_t robot, std::set<pid_t> network)
    : fRobotProcess(robot),
      fNetwork(std::move(network)),
      fBegin(std::chrono::steady_clock::now()),
      fRobot(secondsIn("/proc/" + std::to_string(robot))),
      fDesktop(desktopSeconds()) {
}

double CpuTime::desktopSeconds() const {
  double seconds = secondsIn("/proc/self");
  for (const pid_t thread : fNetwork)
    seconds -= secondsIn(std::string(kOwnThreads) + "/" + std::to_string(thread));
  return seconds;
}

double CpuTime::percent(double seconds) const {
  return 100 * seconds /
         std::chrono::duration<double>(std::chrono::steady_clock::now() - fBegin).count();
}

double CpuTime::robot() const {
  return percent(secondsIn("/proc/" + std::to_string(fRobotProcess)) - fRobot);
}

double CpuTime::desktop() const {
  return percent(desktopSeconds() - fDesktop);
}

}  // namespace bench

// SPDX-License-Identifier: Apache-2.0
#include "support/ftp_processes.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

std::vector<pid_t> ftpProcesses() {
  std::vector<pid_t> result;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream children(thread.path() / "children");
    for (pid_t child = 0; children >> child;) {
      std::string name;
      std::ifstream("/proc/" + std::to_string(child) + "/comm") >> name;
      if (name.starts_with("pure-ftpd")) result.push_back(child);
    }
  }
  return result;
}

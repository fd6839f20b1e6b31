// SPDX-License-Identifier: Apache-2.0
#include "footprint.h"

#include <filesystem>
#include <fstream>
#include <string>

std::optional<Footprint> footprintOf(pid_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::ifstream status(folder + "/status");
  Footprint result;
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") status >> result.kilobytes;
    if (word == "Threads:") status >> result.threads;
  }
  if (result.threads == 0 || result.kilobytes == 0) return std::nullopt;
  std::error_code error;
  for (std::filesystem::directory_iterator fd(folder + "/fd", error), end; !error && fd != end;
       fd.increment(error))
    ++result.descriptors;
  return result;
}

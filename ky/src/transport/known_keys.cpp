// SPDX-License-Identifier: Apache-2.0
#include "transport/known_keys.h"

#include <utility>
#include <vector>

#include "ky/error.h"
#include "zu/log.h"

namespace Ky {

KnownKeys::KnownKeys(KyKeyStore store) : fStore(std::move(store)) {
  read();
}

bool KnownKeys::contains(const std::string& key) {
  // Files that come, go or are replaced change their folder; one that is written in place does not.
  const bool isOld = std::chrono::steady_clock::now() - fRead >= kRereadAfter;
  if (isOld || fMayHideAChange || timeOfChange() != fChange) read();
  return fKeys.contains(key);
}

void KnownKeys::read() {
  fRead = std::chrono::steady_clock::now();
  fChange = timeOfChange();  // before reading: what changes meanwhile is read again
  const auto now = std::filesystem::file_time_type::clock::now();
  fMayHideAChange = fChange > now - kClockTick && fChange <= now;
  std::vector<std::string> problems;
  try {
    const std::vector<std::string> keys = fStore.knownKeys(problems);
    fKeys = {keys.begin(), keys.end()};
  } catch (const KyError& error) {
    problems.emplace_back(error.what());  // the keys of before hold
  }
  log({problems.begin(), problems.end()});
}

void KnownKeys::log(const std::set<std::string>& problems) {
  for (const std::string& problem : problems)
    if (!fProblems.contains(problem)) zu::log::warning("ky", "authenticate") << problem;
  fProblems = problems;
}

std::filesystem::file_time_type KnownKeys::timeOfChange() const {
  std::error_code problem;
  return std::filesystem::last_write_time(fStore.knownFolder(), problem);
}

}  // namespace Ky

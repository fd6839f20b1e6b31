// SPDX-License-Identifier: Apache-2.0
// The keys that a robot knows, as they are in their folder now.
#pragma once

#include <chrono>
#include <filesystem>
#include <set>
#include <string>

#include "ky/keys.h"

namespace Ky {

// Follows the folder while the robot runs. Never throws for what it finds there: what can't be read
// is left out and logged, once. Thread-bound.
class KnownKeys {
 public:
  explicit KnownKeys(KyKeyStore store);

  // `key` is Z85 text. Costs a look at the folder's time of change; and no more, however often
  // strangers ask, while nothing changes there, but for one reading in kRereadAfter.
  bool contains(const std::string& key);

 private:
  static constexpr std::chrono::milliseconds kRereadAfter{100};
  static constexpr std::chrono::milliseconds kClockTick{20};  // the file system's, at most

  void read();
  void log(const std::set<std::string>& problems);
  std::filesystem::file_time_type timeOfChange() const;

  const KyKeyStore fStore;
  std::set<std::string> fKeys;
  std::set<std::string> fProblems;  // which are logged already
  std::filesystem::file_time_type fChange;
  bool fMayHideAChange = false;  // another change in the same tick would look the same
  std::chrono::steady_clock::time_point fRead;
};

}  // namespace Ky

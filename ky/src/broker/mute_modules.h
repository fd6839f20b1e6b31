// SPDX-License-Identifier: Apache-2.0
// Modules that let a call run into its deadline.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

#include "zu/mutex.h"

namespace Ky {

// Heartbeats tell of dead peers, not of a module that hangs: whoever calls that one thirty times in
// a row shall wait once. Thread-safe.
class MuteModules {
 public:
  using Time = std::chrono::steady_clock::time_point;

  // False when it is mute already. `since`: when the call began that it did not answer.
  bool add(const std::string& module, Time since);
  // It has answered.
  void remove(const std::string& module);
  void clear();
  int count() const;
  // Nothing when it is not mute.
  std::optional<Time> since(const std::string& module) const;

 private:
  mutable zu::Mutex fMutex;
  std::map<std::string, Time> fModules ZU_GUARDED_BY(fMutex);
};

}  // namespace Ky

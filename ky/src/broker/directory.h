// SPDX-License-Identifier: Apache-2.0
// Which peer holds which module.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "zu/mutex.h"

namespace Ky {

// Several peers may hold modules of one name: the newest gets the calls, and when it leaves, the
// one before it. Thread-safe.
class Directory {
 public:
  void add(const std::string& module, const std::string& route);
  void remove(const std::string& module, const std::string& route);
  void removeAll(const std::string& route);
  // What this peer holds besides `modules` is gone.
  void keepOnly(const std::set<std::string>& modules, const std::string& route);
  // The same peer on another connection.
  void rename(const std::string& route, const std::string& newRoute);
  std::optional<std::string> holder(const std::string& module) const;
  std::vector<std::string> names() const;

 private:
  mutable zu::Mutex fMutex;
  std::map<std::string, std::vector<std::string>> fHolders ZU_GUARDED_BY(fMutex);  // oldest first
};

}  // namespace Ky

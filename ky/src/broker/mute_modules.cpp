// SPDX-License-Identifier: Apache-2.0
#include "broker/mute_modules.h"

namespace Ky {

bool MuteModules::add(const std::string& module, Time since) {
  const zu::MutexLock guard(fMutex);
  return fModules.emplace(module, since).second;
}

void MuteModules::remove(const std::string& module) {
  const zu::MutexLock guard(fMutex);
  fModules.erase(module);
}

int MuteModules::count() const {
  const zu::MutexLock guard(fMutex);
  return static_cast<int>(fModules.size());
}

void MuteModules::clear() {
  const zu::MutexLock guard(fMutex);
  fModules.clear();
}

std::optional<MuteModules::Time> MuteModules::since(const std::string& module) const {
  const zu::MutexLock guard(fMutex);
  const auto found = fModules.find(module);
  if (found == fModules.end()) return std::nullopt;
  return found->second;
}

}  // namespace Ky

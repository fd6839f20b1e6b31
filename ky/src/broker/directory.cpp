// SPDX-License-Identifier: Apache-2.0
#include "broker/directory.h"

#include <algorithm>

namespace Ky {

void Directory::add(const std::string& module, const std::string& route) {
  const zu::MutexLock guard(fMutex);
  auto& holders = fHolders[module];
  if (std::find(holders.begin(), holders.end(), route) == holders.end()) holders.push_back(route);
}

void Directory::remove(const std::string& module, const std::string& route) {
  const zu::MutexLock guard(fMutex);
  const auto found = fHolders.find(module);
  if (found == fHolders.end()) return;
  std::erase(found->second, route);
  if (found->second.empty()) fHolders.erase(found);
}

void Directory::removeAll(const std::string& route) {
  const zu::MutexLock guard(fMutex);
  for (auto& [module, holders] : fHolders) std::erase(holders, route);
  std::erase_if(fHolders, [](const auto& entry) { return entry.second.empty(); });
}

void Directory::keepOnly(const std::set<std::string>& modules, const std::string& route) {
  const zu::MutexLock guard(fMutex);
  for (auto& [module, holders] : fHolders)
    if (!modules.contains(module)) std::erase(holders, route);
  std::erase_if(fHolders, [](const auto& entry) { return entry.second.empty(); });
}

void Directory::rename(const std::string& route, const std::string& newRoute) {
  const zu::MutexLock guard(fMutex);
  for (auto& [module, holders] : fHolders)
    std::replace(holders.begin(), holders.end(), route, newRoute);
}

std::optional<std::string> Directory::holder(const std::string& module) const {
  const zu::MutexLock guard(fMutex);
  const auto found = fHolders.find(module);
  if (found == fHolders.end()) return std::nullopt;
  return found->second.back();
}

std::vector<std::string> Directory::names() const {
  const zu::MutexLock guard(fMutex);
  std::vector<std::string> names;
  for (const auto& [module, holders] : fHolders) names.push_back(module);
  return names;
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "robot/services/change_stream.h"

#include <algorithm>

namespace robot {

ChangeStream::ChangeStream(std::shared_ptr<Ky::KyStreamSender> sender,
                           const std::map<std::string, MemoryValue>& values)
    : fSender(std::move(sender)) {
  for (const auto& [key, value] : values) fKeys[key] = {value, value != nullptr};
}

bool ChangeStream::change(const std::string& key, const MemoryValue& value) {
  const auto found = fKeys.find(key);
  if (found == fKeys.end()) return false;
  found->second = {value, true};
  return true;
}

bool ChangeStream::isWaiting() const {
  return fIsNew || std::any_of(fKeys.begin(), fKeys.end(),
                               [](const auto& entry) { return entry.second.isChanged; });
}

std::optional<MemoryItem> ChangeStream::take() {
  if (!fSender->isIdle()) return std::nullopt;
  noteLosses();
  if (!isWaiting()) {
    fIsOneByOne = false;
    return std::nullopt;
  }
  fIsNew = false;
  fSent.clear();
  MemoryItem item;
  for (auto& [key, state] : fKeys) {
    if (!state.isChanged) continue;
    state.isChanged = false;
    item.emplace_back(key, state.value);
    fSent.push_back(key);
    if (fIsOneByOne) break;
  }
  return item;
}

// What broke with the connection is told anew, and what was too large together one by one. A single
// value that is too large can't be told at all.
void ChangeStream::noteLosses() {
  const std::uint64_t lost = fSender->lost();
  const std::uint64_t refused = fSender->refused();
  if (refused != fRefused && fSent.size() > 1) {
    fIsOneByOne = true;
    for (const std::string& key : fSent) fKeys[key].isChanged = true;
  }
  if (lost - fLost > refused - fRefused)
    for (auto& [key, state] : fKeys) state.isChanged = true;
  fLost = lost;
  fRefused = refused;
}

}  // namespace robot

// SPDX-License-Identifier: Apache-2.0
#include "broker/pending_calls.h"

#include <utility>
#include <vector>

#include "ky/meanwhile.h"

namespace Ky {

void PendingCall::settle(Outcome outcome) {
  const zu::MutexLock guard(fMutex);
  if (fOutcome) return;
  fOutcome = std::move(outcome);
  fSettled.notifyAll();
}

std::optional<Outcome> PendingCall::wait(std::chrono::steady_clock::time_point deadline,
                                         std::function<std::string()> what) {
  KyWait wait(std::move(what));
  const zu::MutexLock guard(fMutex);
  while (!fOutcome) {
    if (fSettled.waitUntil(fMutex, wait.until(deadline))) continue;
    if (std::chrono::steady_clock::now() >= deadline) break;
    const zu::MutexUnlock meanwhile(fMutex);
    wait.work();
  }
  return std::move(fOutcome);
}

std::shared_ptr<PendingCall> PendingCalls::add(std::int64_t id, const std::string& route) {
  auto call = std::make_shared<PendingCall>();
  const zu::MutexLock guard(fMutex);
  fEntries[id] = {route, call};
  return call;
}

bool PendingCalls::settle(std::int64_t id, const std::string& route, Outcome outcome) {
  std::shared_ptr<PendingCall> call;
  {
    const zu::MutexLock guard(fMutex);
    const auto found = fEntries.find(id);
    if (found == fEntries.end() || found->second.route != route) return false;
    call = std::move(found->second.call);
    fEntries.erase(found);
  }
  call->settle(std::move(outcome));
  return true;
}

void PendingCalls::forget(std::int64_t id) {
  const zu::MutexLock guard(fMutex);
  fEntries.erase(id);
}

void PendingCalls::failAll(const std::string& route, const std::string& text) {
  std::vector<std::shared_ptr<PendingCall>> calls;
  {
    const zu::MutexLock guard(fMutex);
    for (auto at = fEntries.begin(); at != fEntries.end();) {
      if (at->second.route == route) {
        calls.push_back(std::move(at->second.call));
        at = fEntries.erase(at);
      } else {
        ++at;
      }
    }
  }
  for (const auto& call : calls) call->settle(Outcome::failure({}, {}, text));
}

}  // namespace Ky

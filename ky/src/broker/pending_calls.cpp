#include "broker/pending_calls.h"

#include <vector>

namespace Ky {

void PendingCall::settle(Outcome outcome) {
  const std::lock_guard guard(fMutex);
  if (fOutcome) return;
  fOutcome = std::move(outcome);
  fSettled.notify_all();
}

std::optional<Outcome> PendingCall::wait(std::chrono::steady_clock::time_point deadline) {
  std::unique_lock lock(fMutex);
  fSettled.wait_until(lock, deadline, [this] { return fOutcome.has_value(); });
  return std::move(fOutcome);
}

std::shared_ptr<PendingCall> PendingCalls::add(std::int64_t id, const std::string& route) {
  auto call = std::make_shared<PendingCall>();
  const std::lock_guard guard(fMutex);
  fEntries[id] = {route, call};
  return call;
}

bool PendingCalls::settle(std::int64_t id, const std::string& route, Outcome outcome) {
  std::shared_ptr<PendingCall> call;
  {
    const std::lock_guard guard(fMutex);
    const auto found = fEntries.find(id);
    if (found == fEntries.end() || found->second.route != route) return false;
    call = std::move(found->second.call);
    fEntries.erase(found);
  }
  call->settle(std::move(outcome));
  return true;
}

void PendingCalls::forget(std::int64_t id) {
  const std::lock_guard guard(fMutex);
  fEntries.erase(id);
}

void PendingCalls::failAll(const std::string& route, const std::string& text) {
  std::vector<std::shared_ptr<PendingCall>> calls;
  {
    const std::lock_guard guard(fMutex);
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

// SPDX-License-Identifier: Apache-2.0
// Calls that wait for an answer.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "broker/outcome.h"
#include "zu/mutex.h"

namespace Ky {

// One waiting caller. Thread-safe.
class PendingCall {
 public:
  // The first outcome counts.
  void settle(Outcome outcome);
  // Nothing when the deadline passes first. `what`: see KyWait.
  std::optional<Outcome> wait(std::chrono::steady_clock::time_point deadline,
                              std::function<std::string()> what);

 private:
  zu::Mutex fMutex;
  zu::ConditionVariable fSettled;
  std::optional<Outcome> fOutcome ZU_GUARDED_BY(fMutex);
};

// Finds the caller to whom an answer from outside belongs. Thread-safe.
class PendingCalls {
 public:
  // `route` is the connection on which the answer must come.
  std::shared_ptr<PendingCall> add(std::int64_t id, const std::string& route);
  // An answer nobody waits for any more, or from another connection, is dropped: false.
  bool settle(std::int64_t id, const std::string& route, Outcome outcome);
  void forget(std::int64_t id);
  // The connection is gone: its calls end with this error.
  void failAll(const std::string& route, const std::string& text);

 private:
  struct Entry {
    std::string route;
    std::shared_ptr<PendingCall> call;
  };
  zu::Mutex fMutex;
  std::map<std::int64_t, Entry> fEntries ZU_GUARDED_BY(fMutex);
};

}  // namespace Ky

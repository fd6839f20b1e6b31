// SPDX-License-Identifier: Apache-2.0
// Calls that are sent before their answers are wanted.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "broker/outcome.h"
#include "broker/pending_calls.h"
#include "ky/ahead.h"

namespace Ky {

// On its way, or answered already.
struct SentCall {
  std::int64_t id = 0;
  std::string module;
  std::string method;
  std::chrono::steady_clock::time_point start;
  std::chrono::milliseconds deadline{0};
  std::shared_ptr<PendingCall> pending;
};

// Thread-safe.
class CallSender {
 public:
  virtual ~CallSender() = default;
  // Throws KyError when it can't be sent.
  virtual SentCall send(const std::string& module, const std::string& method,
                        KyValue::Array arguments, std::chrono::milliseconds deadline) = 0;
  // Waits for the answer, at most until the deadline, of which the outcome then tells. Once a call.
  virtual Outcome await(const SentCall& call) = 0;
  // Instead: the answer is not wanted any more.
  virtual void abandon(const SentCall& call) = 0;
};

// What one KyAhead has sent. Thread-bound; `sender` outlives it.
class CallsAhead {
 public:
  CallsAhead(CallSender& sender, const KyReads& reads, KyWrites writes,
             std::chrono::milliseconds deadline);
  ~CallsAhead();
  CallsAhead(const CallsAhead&) = delete;
  CallsAhead& operator=(const CallsAhead&) = delete;

  std::vector<KyError> finish();

  // How a call of this thread over `sender` ends, as far as one of the thread's scopes knows; else
  // it has to be made.
  static std::optional<Outcome> outcomeOf(const CallSender& sender, const KyRead& call);

 private:
  struct Read {
    KyRead what;
    std::optional<SentCall> sent;    // until it was wanted
    std::optional<Outcome> outcome;  // from then on; neither when it could not be sent
  };

  Read* find(const KyRead& call);
  const KyWrite* findWrite(const KyRead& call) const;
  void ask(Read& read);
  const Outcome& outcomeOf(Read& read);
  void write(const KyWrite& kind, const KyRead& call);

  CallSender& fSender;
  const std::chrono::milliseconds fDeadline;
  std::vector<Read> fReads;
  const KyWrites fWrites;
  std::vector<SentCall> fWritten;
  CallsAhead* const fOuter;
};

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "broker/calls_ahead.h"

#include <algorithm>
#include <utility>

namespace Ky {
namespace {

thread_local CallsAhead* innermost = nullptr;

}  // namespace

CallsAhead::CallsAhead(CallSender& sender, const KyReads& reads, KyWrites writes,
                       std::chrono::milliseconds deadline)
    : fSender(sender),
      fDeadline(deadline),
      fWrites(std::move(writes)),
      fOuter(std::exchange(innermost, this)) {
  for (const KyRead& read : reads) {
    if (find(read) != nullptr) continue;
    fReads.push_back({read, {}, {}});
    ask(fReads.back());
  }
}

CallsAhead::~CallsAhead() {
  innermost = fOuter;
  for (const Read& read : fReads)
    if (read.sent) fSender.abandon(*read.sent);
}

std::vector<KyError> CallsAhead::finish() {
  std::vector<KyError> errors;
  for (const SentCall& call : std::exchange(fWritten, {}))
    if (const Outcome outcome = fSender.await(call); outcome.failed)
      errors.push_back(outcome.error());
  return errors;
}

std::optional<Outcome> CallsAhead::outcomeOf(const CallSender& sender, const KyRead& call) {
  for (CallsAhead* scope = innermost; scope != nullptr; scope = scope->fOuter) {
    if (&scope->fSender != &sender) continue;
    Read* read = scope->find(call);
    if (read != nullptr && (read->sent || read->outcome)) return scope->outcomeOf(*read);
    if (const KyWrite* kind = scope->findWrite(call)) {
      scope->write(*kind, call);
      return Outcome::success({});
    }
  }
  return std::nullopt;
}

CallsAhead::Read* CallsAhead::find(const KyRead& call) {
  const auto found = std::find_if(fReads.begin(), fReads.end(),
                                  [&](const Read& read) { return read.what == call; });
  return found != fReads.end() ? &*found : nullptr;
}

const KyWrite* CallsAhead::findWrite(const KyRead& call) const {
  const auto found = std::find_if(fWrites.begin(), fWrites.end(), [&](const KyWrite& write) {
    return write.module == call.module && write.method == call.method;
  });
  return found != fWrites.end() ? &*found : nullptr;
}

void CallsAhead::ask(Read& read) {
  if (read.sent) fSender.abandon(*read.sent);
  read.sent.reset();
  read.outcome.reset();
  try {
    read.sent = fSender.send(read.what.module, read.what.method, read.what.arguments, fDeadline);
  } catch (const KyError&) {
    // Whoever makes this call will hear of it.
  }
}

const Outcome& CallsAhead::outcomeOf(Read& read) {
  if (read.sent) read.outcome = fSender.await(*std::exchange(read.sent, std::nullopt));
  return *read.outcome;
}

void CallsAhead::write(const KyWrite& kind, const KyRead& call) {
  fWritten.push_back(fSender.send(call.module, call.method, call.arguments, fDeadline));
  if (!kind.changes) return;
  if (Read* changed = find(kind.changes(call.arguments))) ask(*changed);
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "ky/meanwhile.h"

#include <algorithm>
#include <utility>

namespace Ky {
namespace {

// What is answered sooner is no wait to anybody who watches.
constexpr std::chrono::milliseconds kFirst{50};
constexpr std::chrono::milliseconds kThen{10};

thread_local KyMeanwhile* innermost = nullptr;
thread_local bool atWork = false;

}  // namespace

KyMeanwhile::KyMeanwhile(Work work)
    : fWork(std::move(work)), fOuter(std::exchange(innermost, this)) {
}

KyMeanwhile::~KyMeanwhile() {
  innermost = fOuter;
}

bool KyMeanwhile::isAtWork() {
  return atWork;
}

KyWait::KyWait(std::function<std::string()> what)
    : fWhat(std::move(what)),
      fMeanwhile(atWork ? nullptr : innermost),
      fNext(std::chrono::steady_clock::now() + kFirst) {
}

KyWait::Time KyWait::until(Time end) const {
  return fMeanwhile == nullptr ? end : std::min(end, fNext);
}

void KyWait::work() {
  if (fMeanwhile == nullptr || std::chrono::steady_clock::now() < fNext) return;
  atWork = true;
  fMeanwhile->fWork(fWhat());
  atWork = false;
  fNext = std::chrono::steady_clock::now() + kThen;
}

}  // namespace Ky

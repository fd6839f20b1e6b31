// SPDX-License-Identifier: Apache-2.0
// What a thread does while it waits for a robot: a window goes on painting.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace Ky {

// While it lives on a thread, what that thread waits for in the runtime (an answer, a connection,
// the end of a module's call) does not put it to sleep for long: once a wait has taken 50 ms,
// `work` runs, and again every 10 ms until the wait is over. `work` is told in words for people
// what is waited for ("KyVideoDevice at 127.0.0.1:9559"); it must be brief and throw nothing. What
// it calls itself waits without it.
//
// The innermost of a thread counts. Thread-bound to the thread that made it.
class KyMeanwhile {
 public:
  using Work = std::function<void(const std::string& what)>;

  explicit KyMeanwhile(Work work);
  ~KyMeanwhile();
  KyMeanwhile(const KyMeanwhile&) = delete;
  KyMeanwhile& operator=(const KyMeanwhile&) = delete;

  // Whether this thread is in its work now: something further down its stack waits, and relies on
  // whatever it was given.
  static bool isAtWork();

 private:
  friend class KyWait;
  const Work fWork;
  KyMeanwhile* const fOuter;
};

// One wait of a thread, in slices between which its KyMeanwhile works; in a single slice where it
// has none:
//
//   KyWait wait([] { return "the camera thread"; });
//   while (!thread.isFinished() && Clock::now() < end) {
//     if (!thread.wait(wait.until(end))) wait.work();
//   }
//
// Thread-bound.
class KyWait {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit KyWait(std::function<std::string()> what);

  // How long to sleep now: at most until `end`.
  Time until(Time end) const;
  // To be called when the time has come. Without locks that the work might want.
  void work();

 private:
  const std::function<std::string()> fWhat;
  KyMeanwhile* const fMeanwhile;  // null without
  Time fNext;
};

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "broker/call_queue.h"

namespace Ky {

CallQueue::CallQueue() : fThread([this] { run(); }), fThreadId(fThread.get_id()) {
}

CallQueue::~CallQueue() {
  stop();
}

CallQueue::Pushed CallQueue::push(Job job) {
  {
    const zu::MutexLock guard(fMutex);
    if (fStopping) return Pushed::Stopped;
    if (fJobs.size() >= kMaxWaiting) return Pushed::Full;
    fJobs.push_back(std::move(job));
  }
  fChanged.notifyOne();
  return Pushed::Yes;
}

bool CallQueue::isCurrentThread() const {
  return std::this_thread::get_id() == fThreadId;
}

void CallQueue::stop() {
  std::deque<Job> cancelled;
  {
    const zu::MutexLock guard(fMutex);
    fStopping = true;
    cancelled.swap(fJobs);
  }
  fChanged.notifyAll();
  for (const Job& job : cancelled) job.cancel();
  const zu::MutexLock guard(fJoinMutex);
  if (fThread.joinable()) fThread.join();
}

void CallQueue::run() {
  const zu::MutexLock guard(fMutex);
  while (true) {
    while (!fStopping && fJobs.empty()) fChanged.wait(fMutex);
    if (fStopping) return;
    Job job = std::move(fJobs.front());
    fJobs.pop_front();
    const zu::MutexUnlock meanwhile(fMutex);
    if (std::chrono::steady_clock::now() < job.deadline)
      job.run();
    else
      job.cancel();
    job = {};
  }
}

}  // namespace Ky

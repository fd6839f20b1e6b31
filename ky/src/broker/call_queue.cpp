#include "broker/call_queue.h"

namespace Ky {

CallQueue::CallQueue() : fThread([this] { run(); }), fThreadId(fThread.get_id()) {
}

CallQueue::~CallQueue() {
  stop();
}

CallQueue::Pushed CallQueue::push(Job job) {
  {
    const std::lock_guard guard(fMutex);
    if (fStopping) return Pushed::Stopped;
    if (fJobs.size() >= kMaxWaiting) return Pushed::Full;
    fJobs.push_back(std::move(job));
  }
  fChanged.notify_one();
  return Pushed::Yes;
}

bool CallQueue::isCurrentThread() const {
  return std::this_thread::get_id() == fThreadId;
}

void CallQueue::stop() {
  std::deque<Job> cancelled;
  {
    const std::lock_guard guard(fMutex);
    fStopping = true;
    cancelled.swap(fJobs);
  }
  fChanged.notify_all();
  for (const Job& job : cancelled) job.cancel();
  const std::lock_guard guard(fJoinMutex);
  if (fThread.joinable()) fThread.join();
}

void CallQueue::run() {
  std::unique_lock lock(fMutex);
  while (true) {
    fChanged.wait(lock, [this] { return fStopping || !fJobs.empty(); });
    if (fStopping) return;
    Job job = std::move(fJobs.front());
    fJobs.pop_front();
    lock.unlock();
    if (std::chrono::steady_clock::now() < job.deadline)
      job.run();
    else
      job.cancel();
    job = {};
    lock.lock();
  }
}

}  // namespace Ky

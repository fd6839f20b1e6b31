// SPDX-License-Identifier: Apache-2.0
#include "transport/io_loop.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>

#include "ky/error.h"

namespace Ky {

IoLoop::IoLoop() : fWakeFd(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (fWakeFd < 0) throw KyError(std::string("can't make an eventfd: ") + std::strerror(errno));
}

IoLoop::~IoLoop() {
  stop();
  ::close(fWakeFd);
}

void IoLoop::start(Client& client) {
  const zu::MutexLock guard(fJoinMutex);
  fThread = std::thread([this, &client] {
    // Signals are the program's: here they would only interrupt ZeroMQ's calls.
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
    run(client);
  });
}

bool IoLoop::post(std::function<void()> task) {
  {
    const zu::MutexLock guard(fMutex);
    if (fStopping) return false;
    fPosted.push_back(std::move(task));
  }
  wake();
  return true;
}

void IoLoop::stop() {
  {
    const zu::MutexLock guard(fMutex);
    fStopping = true;
  }
  wake();
  const zu::MutexLock guard(fJoinMutex);
  if (fThread.joinable()) fThread.join();
}

void IoLoop::wake() const {
  const std::uint64_t one = 1;
  // Full means that a wake-up is on its way already.
  [[maybe_unused]] const auto written = ::write(fWakeFd, &one, sizeof one);
}

bool IoLoop::runPosted() {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto read = ::read(fWakeFd, &count, sizeof count);
  std::vector<std::function<void()>> tasks;
  bool goOn = true;
  {
    const zu::MutexLock guard(fMutex);
    tasks.swap(fPosted);
    goOn = !fStopping;
  }
  for (const auto& task : tasks) task();
  return goOn;
}

void IoLoop::run(Client& client) {
  while (runPosted()) {
    client.work();
    std::vector<zmq::pollitem_t> items = client.waitFor();
    items.push_back({nullptr, fWakeFd, ZMQ_POLLIN, 0});
    zmq::poll(items, kTick);
  }
}

}  // namespace Ky

// SPDX-License-Identifier: Apache-2.0
#include "signal_watcher.h"

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <atomic>
#include <csignal>
#include <cstdint>

namespace Lookout {
namespace {

// All that a signal handler may touch.
std::atomic<int> wakeFd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void onStopSignal(int) {
  const int savedErrno = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeFd, &one, sizeof one);
  errno = savedErrno;
}

void catchSignal(int number, void (*handler)(int), int flags) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  ::sigaction(number, &action, nullptr);
}

}  // namespace

SignalWatcher::SignalWatcher(QObject* parent) : QObject(parent) {
  const int fd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  wakeFd = fd;
  fNotifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
  connect(fNotifier, &QSocketNotifier::activated, this, [this] {
    fNotifier->setEnabled(false);
    emit stopRequested();
  });
  for (const int number : {SIGINT, SIGTERM})
    catchSignal(number, onStopSignal, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

SignalWatcher::~SignalWatcher() {
  for (const int number : {SIGINT, SIGTERM}) catchSignal(number, SIG_DFL, 0);
  ::close(wakeFd.exchange(-1));
}

}  // namespace Lookout

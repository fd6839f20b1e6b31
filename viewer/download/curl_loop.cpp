// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/curl_loop.h"

#include <QSocketNotifier>
#include <chrono>

namespace {

// When a server answers very fast, libcurl 7.88 begins a data connection, but waits for no socket
// before it runs once more, for which nothing is left to wake it.
constexpr std::chrono::milliseconds kRescueDelay{5};

// Not deleted at once: it may be what we were called by.
void retire(std::unique_ptr<QSocketNotifier>& notifier) {
  if (!notifier) return;
  notifier->setEnabled(false);
  notifier.release()->deleteLater();
}

}  // namespace

CurlLoop::CurlLoop(QObject* parent) : QObject(parent), fMulti(curl_multi_init()) {
  curl_multi_setopt(fMulti, CURLMOPT_SOCKETFUNCTION, &CurlLoop::onSocket);
  curl_multi_setopt(fMulti, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(fMulti, CURLMOPT_TIMERFUNCTION, &CurlLoop::onTimer);
  curl_multi_setopt(fMulti, CURLMOPT_TIMERDATA, this);
  fTimer.setSingleShot(true);
  connect(&fTimer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
  fRescue.setSingleShot(true);
  connect(&fRescue, &QTimer::timeout, this, [this] {
    // Unpausing wakes it, and does nothing where nothing was paused.
    curl_easy_pause(fTransfer, CURLPAUSE_ALL);
    curl_easy_pause(fTransfer, CURLPAUSE_CONT);
  });
}

CurlLoop::~CurlLoop() {
  curl_multi_cleanup(fMulti);
  for (auto& [socket, notifiers] : fNotifiers) {
    retire(notifiers.read);
    retire(notifiers.write);
  }
}

void CurlLoop::start(CURL* transfer) {
  fTransfer = transfer;
  curl_multi_add_handle(fMulti, transfer);
}

void CurlLoop::stop(CURL* transfer) {
  fTransfer = nullptr;
  fRescue.stop();
  curl_multi_remove_handle(fMulti, transfer);
}

int CurlLoop::onSocket(CURL* /*transfer*/, curl_socket_t socket, int what, void* self,
                       void* /*known*/) {
  static_cast<CurlLoop*>(self)->watch(socket, what);
  return 0;
}

int CurlLoop::onTimer(CURLM* /*multi*/, long milliseconds, void* self) {
  QTimer& timer = static_cast<CurlLoop*>(self)->fTimer;
  if (milliseconds < 0) {
    timer.stop();
  } else {
    timer.start(std::chrono::milliseconds(milliseconds));
  }
  return 0;
}

void CurlLoop::watch(curl_socket_t socket, int what) {
  if (what == CURL_POLL_REMOVE) {
    const auto found = fNotifiers.find(socket);
    if (found == fNotifiers.end()) return;
    retire(found->second.read);
    retire(found->second.write);
    fNotifiers.erase(found);
    return;
  }
  Notifiers& notifiers = fNotifiers[socket];
  if (!notifiers.read) {
    notifiers.read = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
    notifiers.write = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Write);
    connect(notifiers.read.get(), &QSocketNotifier::activated, this,
            [this, socket] { act(socket, CURL_CSELECT_IN); });
    connect(notifiers.write.get(), &QSocketNotifier::activated, this,
            [this, socket] { act(socket, CURL_CSELECT_OUT); });
  }
  notifiers.read->setEnabled((what & CURL_POLL_IN) != 0);
  notifiers.write->setEnabled((what & CURL_POLL_OUT) != 0);
}

void CurlLoop::act(curl_socket_t socket, int what) {
  // On GLib's event loop timers have to wait while sockets are always ready, unless events are
  // posted.
  QMetaObject::invokeMethod(
      this, [] {}, Qt::QueuedConnection);
  fEnteredAt = std::chrono::steady_clock::now();
  int running = 0;
  curl_multi_socket_action(fMulti, socket, what, &running);
  int left = 0;
  const CURLMsg* message = curl_multi_info_read(fMulti, &left);
  if (message != nullptr && message->msg == CURLMSG_DONE) {
    emit ended(message->data.result);
  } else if (running > 0 && fNotifiers.empty()) {
    fRescue.start(kRescueDelay);
  }
}
